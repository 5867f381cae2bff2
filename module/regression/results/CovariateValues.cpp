#include "module/regression/results/CovariateValues.h"

#include "module/resources/RegressionResults.h"
#include "module/survdata/ReportLines.h"

#include <cmath>

namespace ozm::survival {

CovariateValues ValuesForPlot(const RegReportOf& of) {
    const RegressionResults& results = of.Results();
    const std::vector<double>& given = of.state.output.covariateValues;
    CovariateValues found{CovariateMeans(results), {}};
    std::vector<std::string> items;
    for (std::size_t k = 0; k < found.values.size() && k < given.size(); ++k) {
        if (std::isnan(given[k])) continue;
        found.values[k] = given[k];
        items.push_back(Filled(StrRegValueOf, {results.names[k], FormatNumber(given[k])}));
    }
    const int note = items.empty()                         ? StrRegNoteMeans
                     : items.size() == found.values.size() ? StrRegNoteValues
                                                           : StrRegNoteSomeValues;
    found.described = Filled(note, {Listed(items, 0)});
    return found;
}

std::vector<double> CovariateMeans(const RegressionResults& results) {
    std::vector<double> means;
    for (std::size_t k = 0; k < results.sample.Covariates(); ++k)
        means.push_back(results.sample.Summary(k).mean);
    return means;
}

} // namespace ozm::survival
