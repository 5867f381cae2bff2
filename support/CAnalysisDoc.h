#pragma once

namespace ozm {

class HostServices;

/// The host document that an analysis works on: it hands out the host's services.
class CAnalysisDoc {
public:
    virtual ~CAnalysisDoc() = default;
    virtual HostServices& Services() = 0;
};

} // namespace ozm
