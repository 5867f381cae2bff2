#include "module/regression/results/ModelResults.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"

namespace ozm::survival {

extern const ModelResults parametricResults;

const ModelResults parametricResults{
    StrRegNormal,  0, StrRegNoteExp, {}, [](const RegReportOf&) { return std::vector<FitMeasure>{}; },
    StrRegNoteWald};

} // namespace ozm::survival
