#include "apps/cli/commands/SurvivalCommand.h"

#include "apps/cli/commands/SurvivalModule.h"

namespace korvana::cli {

void SurvivalCommand::declareOptions(CLI::App& app) {
    options_.declare(app);
}

Analysis SurvivalCommand::load() const {
    return loadSurvivalModule();
}

std::vector<ResultMessage> SurvivalCommand::checkData(const ActiveData& data) {
    TimesAndCodes& known = wanted_.timesAndCodes;
    if (hasCases()) {
        known = options_.resolve(data);
        wanted_.boxes = {known.times, {known.censor}};
        wanted_.members = {{"CodeForCompleteResponses", known.complete},
                           {"CodeForCensoredResponses", known.censored}};
    }
    specify(data, wanted_);
    return known.remarks;
}

bool SurvivalCommand::compute(Script& script, std::size_t run) {
    using List = ozm::AutomationValue::List;
    begin(run);
    if (run == 0) {
        script.put("TypeOfAnalysis", typeOfAnalysis_);
        if (!script.press("OK")) return false;
    } else if (script.isAt(resultsDialog_)) {
        script.press("Cancel");
    }
    for (const auto& [member, value] : wanted_.forms[run])
        script.put(member, value);
    List boxes;
    for (const std::vector<int>& box : wanted_.boxes)
        boxes.emplace_back(List(box.begin(), box.end()));
    script.put("Variables", boxes);
    for (const auto& [member, value] : wanted_.members)
        script.put(member, value);
    return finishSpecification(script) && script.press("OK") && script.isAt(resultsDialog_);
}

std::vector<std::uint8_t> SurvivalCommand::casesWithTimesAndCodes(const ActiveData& data) const {
    const TimesAndCodes wanted = options_.resolve(data);
    const DataSet& set = data.dataSet();
    std::vector<std::uint8_t> cases(data.mask().begin(), data.mask().end());
    cases.resize(static_cast<std::size_t>(set.caseCount()), 1);
    const std::span<const double> codes = set.column(wanted.censor - 1);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const bool known = codes[i] == wanted.complete || codes[i] == wanted.censored;
        for (const int time : wanted.times)
            if (!known || set.isMissing(time - 1, static_cast<int>(i))) cases[i] = 0;
    }
    return cases;
}

} // namespace korvana::cli
