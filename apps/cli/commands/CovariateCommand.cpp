#include "apps/cli/commands/CovariateCommand.h"

#include "apps/cli/CodeChecks.h"

#include <string_view>
#include <utility>

namespace korvana::cli {
namespace {

constexpr int scSurRegressionModels = 5;
constexpr const char* valuesMember = "CovariateValues";

bool isPlotAt(const AnalysisCommand::Output& output) {
    return output.name == std::string_view{"plot-at"};
}

} // namespace

CovariateCommand::CovariateCommand(Description description, const EstimationOptions::Help& help)
    : SurvivalCommand(std::move(description), scSurRegressionModels, "SurRegressionResults"),
      estimation_(help) {}

void CovariateCommand::declareOptions(CLI::App& app) {
    SurvivalCommand::declareOptions(app);
    covariates_.declare(app);
    declareModel(app);
    app.add_flag("--mean-substitution", means_,
                 "a missing covariate is taken for its mean [the case is left out]")
        ->group("Estimation");
    estimation_.declare(app);
    app.add_option("--at", at_,
                   "values of covariates for plot-at, e.g. \"karno=60,celltype=adeno\"; the means of those "
                   "that are not named; may be repeated")
        ->type_name("V=X[,V=X...]")
        ->allow_extra_args(false)
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->group("Output");
    level_.declare(app);
}

void CovariateCommand::checkOptions() {
    covariates_.check();
    estimation_.check();
    level_.check(LevelOption::Ends::Excluded);
}

void CovariateCommand::prepareData(ActiveData& data) {
    std::vector<std::uint8_t> counting;
    // A group of which no case counts would be an indicator that is 0 in all cases.
    if (covariates_.mayHaveGroups()) {
        counting = casesWithTimesAndCodes(data);
        keepCounting(data, counting);
    }
    covariates_.prepare(data, std::move(counting), !means_);
}

void CovariateCommand::specify(const ActiveData& data, Specification& wanted) {
    std::vector<int> all = wanted.timesAndCodes.times;
    all.push_back(wanted.timesAndCodes.censor);
    all.insert(all.end(), covariates_.named().begin(), covariates_.named().end());
    wanted.boxes.push_back(covariates_.variables());
    const std::vector<int> further = specifyModel(data, wanted);
    all.insert(all.end(), further.begin(), further.end());
    refuseTwice(data.dataSet(), std::move(all));
    estimation_.checkStart(covariates_.names(), furtherParameters());
    for (const std::string& text : at_)
        valuesAt_.push_back(covariates_.valuesAt(data, text));
    if (means_) wanted.members.emplace_back("MeanSubstitutionOfMD", true);
    if (estimation_.forDialog()) wanted.members.emplace_back("NonDefaultStartValuesIterations", true);
}

void CovariateCommand::begin(std::size_t /*run*/) {
    estimation_.begin();
}

std::string CovariateCommand::advice(int /*message*/) const {
    return estimation_.advice();
}

bool CovariateCommand::isMadeUnasked(const Output& output, const Script& /*script*/) const {
    return !isPlotAt(output) || !at_.empty();
}

void CovariateCommand::prepareOutputs(Script& script) {
    level_.put(script);
    if (!at_.empty()) script.put(valuesMember, ozm::AutomationValue::List{}); // those of the run before
}

std::vector<AnalysisCommand::Settings> CovariateCommand::settingsOf(const Output& output) const {
    if (!isPlotAt(output) || at_.empty()) return SurvivalCommand::settingsOf(output);
    std::vector<Settings> all;
    for (const std::vector<double>& values : valuesAt_)
        all.push_back({{valuesMember, ozm::AutomationValue::List(values.begin(), values.end())}});
    return all;
}

} // namespace korvana::cli
