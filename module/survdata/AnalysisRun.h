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

/// The skeleton of a run that a specification dialog's OK starts. True when there are results. Else nothing
/// is kept, and the message of the status was shown over `window` (none after a stop).
///
/// `firstText` is the string number of what the status line shows first. An analysis passes four functions.
/// `Status compute(StatusLine&)` reads and computes; running out of memory in it gives Status::NoMemory.
/// `void release()` gives back the results; it is called unless the run succeeds, also when the host throws.
/// `int message(Status)` returns the string number of a status's message, 0 for none. `std::string
/// describe(Status)` returns the details of this run for that message.
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
