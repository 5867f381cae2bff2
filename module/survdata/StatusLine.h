#pragma once

#include "module/resources/Resources.h"
#include "support/CAnalysisSupport.h"

namespace ozm::survival {

/// Shows a text in the host's status line for as long as it lives, then clears the line.
class StatusLine {
public:
    StatusLine(CAnalysisSupport& host, int text) : host_(host) { Show(text); }
    ~StatusLine() {
        try {
            host_.d_stat({});
        } catch (...) { // NOLINT(bugprone-empty-catch): a text that cannot be cleared
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
