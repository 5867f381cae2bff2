#pragma once

#include "module/survdata/StatusLine.h"
#include "module/survdata/StatusMessages.h"
#include "support/CAnalysisSupport.h"

#include <new>
#include <string>
#include <utility>

namespace ozm {
class CAnalysisDialog;
}

namespace ozm::survival {

/// The skeleton of a run behind OK of a specification dialog. True when results stand. Else nothing is kept,
/// and the message of the status was shown over `window` (none after a stop).
///
/// `firstText` is what the status line shows at first, a number of the string table. An analysis hands in
/// four functions. `Status compute(StatusLine&)` reads and computes; memory that runs out in it is
/// Status::NoMemory. `void release()` gives back the results; it is called on every way out but success, also
/// when the host throws. `int message(Status)` answers the number of a status' message, 0 for one that has
/// none. `std::string describe(Status)` answers what the message does not know of this run.
template <class Compute, class Release, class Message, class Describe>
bool RunAnalysis(CAnalysisSupport& host, CAnalysisDialog* window, int firstText, Compute compute,
                 Release release, Message message, Describe describe) {
    using RunStatus = decltype(compute(std::declval<StatusLine&>()));
    struct Keeper {
        Release& release;
        bool keep = false;
        ~Keeper() {
            if (!keep) release();
        }
    };
    RunStatus status = RunStatus::NoMemory;
    {
        Keeper keeper{release};
        StatusLine line(host, firstText);
        try {
            status = compute(line);
        } catch (const std::bad_alloc&) {
            status = RunStatus::NoMemory;
        }
        keeper.keep = status == RunStatus::Success;
    }
    if (const int id = message(status); id != 0)
        host.DspMessageBox(MessageStyle::Refusal, window, id, describe(status));
    return status == RunStatus::Success;
}

} // namespace ozm::survival
