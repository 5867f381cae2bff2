#pragma once

#include "module/resources/Resources.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// The host's status line while something is done; empty again on every way out.
class StatusLine {
public:
    StatusLine(CAnalysisSupport& host, int text) : host_(host) { Show(text); }
    ~StatusLine() {
        try {
            host_.d_stat({});
        } catch (...) { // NOLINT(bugprone-empty-catch): a text that cannot be taken away
        }
    }
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;

    /// Shows a text of the string table in place of the one before.
    void Show(int text) { host_.d_stat(Text(text)); }

private:
    CAnalysisSupport& host_;
};

} // namespace ozm::survival
