#include "module/frame/Steps.h"
#include "module/resources/Startup.h"
#include "module/resources/StepNumbers.h"

namespace ozm::survival {

int NotBuiltYet(CAnalysisSupport& analysis) {
    analysis.DspMessageBox(MessageStyle::Information, nullptr, StrNotBuiltYet);
    return StepStart;
}

} // namespace ozm::survival
