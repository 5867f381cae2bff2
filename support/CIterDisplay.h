#pragma once

#include <string_view>

namespace ozm {

/// The iteration window of an estimation: lines that appear one by one, and a Cancel.
class CIterDisplay {
public:
    virtual ~CIterDisplay() = default;

    /// Appends one line.
    virtual void AddText(std::string_view line) = 0;
    /// Whether Cancel was pressed since the window was opened; false while it is closed.
    virtual bool WasCanceled() = 0;
};

} // namespace ozm
