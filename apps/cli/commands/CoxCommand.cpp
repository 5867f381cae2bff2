#include "apps/cli/GroupsOptions.h"
#include "apps/cli/LevelOption.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/CovariateOptions.h"
#include "apps/cli/commands/EstimationOptions.h"
#include "apps/cli/commands/SurvivalCommand.h"

#include <algorithm>
#include <string_view>

namespace korvana::cli {
namespace {

class CoxCommand final : public SurvivalCommand {
public:
    CoxCommand()
        : SurvivalCommand({.title = "Cox regression",
                           .example = "trial.csv --time weeks --censor relapse --complete 1 --censored 0 "
                                      "--covariates age,arm:cat",
                           .outputs = known(),
                           .unasked = "all; stratified with --strata, plot-at with --at"},
                          scSurRegressionModels, "SurRegressionResults") {}

private:
    static constexpr int scSurRegressionModels = 5;
    static constexpr int scSurProportionalHazardRegression = 1;
    static std::vector<Output> known() {
        return {
            {"summary", {"Summary"}, "the fit, its tests, the parameter estimates", true},
            {"covariances", {"ParameterCovariancesCorrelations"}, "and correlations of the estimates", false},
            {"stratified",
             {"StratitifiedAnalysis"},
             "each stratum fitted alone, against the common fit",
             false},
            {"means", {"MeansAndStandardDeviations"}, "of the covariates", false},
            {"proportionality", {"ProportionalHazardsTest"}, "test of proportional hazards", true},
            {"survival-table", {"SurvivalTable"}, "baseline survival at the means", false},
            {"residuals", {"Residuals"}, "martingale and deviance, of every case", false},
            {"schoenfeld", {"ScaledSchoenfeldResiduals"}, "scaled, of every event", false},
            {"plot-survival", {"Plot1"}, "survival at the means", false, true},
            {"plot-residuals", {"Plot2"}, "martingale residuals and linear predictor", false, true},
            {"plot-log-hazard", {"Plot3"}, "log cumulative hazard and log time", false, true},
            {"plot-schoenfeld", {"PlotOfScaledSchoenfeldResiduals"}, "against time", false, true},
            {"forest", {"ForestPlot"}, "hazard ratios with limits", false, true},
            // The last, as its values are settings of the results dialog.
            {"plot-at", {"UserDefinedPlot"}, "survival at each --at, with limits", false, true},
        };
    }

    void declareOptions(CLI::App& app) override {
        SurvivalCommand::declareOptions(app);
        covariates_.declare(app);
        strata_.declare(app);
        app.add_flag("--separate", separate_,
                     "with --strata: the output stratified also has the coefficients of each stratum")
            ->group(TimesAndCodesOptions::helpGroup);
        app.add_flag("--mean-substitution", means_,
                     "a missing covariate is taken for its mean [the case is left out]")
            ->group("Estimation");
        estimation_.declare(app);
        app.add_option(
               "--at", at_,
               "values of covariates for plot-at, e.g. \"karno=60,celltype=adeno\"; the means of those "
               "that are not named; may be repeated")
            ->type_name("V=X[,V=X...]")
            ->allow_extra_args(false)
            ->expected(1)
            ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
            ->group("Output");
        level_.declare(app);
    }
    void checkOptions() override {
        covariates_.check();
        strata_.check();
        if (separate_ && !strata_.isGiven())
            throw UsageError("--separate needs --strata: each stratum gets coefficients of its own");
        estimation_.check();
        level_.check(LevelOption::Ends::Excluded);
    }
    void prepareData(ActiveData& data) override {
        std::vector<std::uint8_t> counting;
        // A group of which no case counts would be an indicator that is 0 in all cases.
        if (covariates_.mayHaveGroups()) {
            counting = casesWithTimesAndCodes(data);
            if (strata_.isGiven()) keepStrata(data, counting);
        }
        covariates_.prepare(data, std::move(counting), !means_);
    }
    void keepStrata(const ActiveData& data, std::vector<std::uint8_t>& cases) const {
        TimesAndCodes others; // its remarks come again
        const Groups strata = strata_.resolve(data, others);
        const std::span<const double> codes = data.dataSet().column(strata.variable - 1);
        for (std::size_t i = 0; i < cases.size(); ++i) {
            const bool isOne = std::ranges::find(strata.codes, codes[i]) != strata.codes.end();
            if (data.dataSet().isMissing(strata.variable - 1, static_cast<int>(i)) ||
                (!strata.codes.empty() && !isOne))
                cases[i] = 0;
        }
    }
    void specify(const ActiveData& data, Specification& wanted) override {
        wanted.form = {{"TypeOfSurvivalRegressionModel", scSurProportionalHazardRegression}};
        std::vector<int> all = wanted.timesAndCodes.times;
        all.push_back(wanted.timesAndCodes.censor);
        all.insert(all.end(), covariates_.named().begin(), covariates_.named().end());
        wanted.boxes.push_back(covariates_.variables());
        if (strata_.isGiven()) {
            const Groups strata = strata_.resolve(data, wanted.timesAndCodes);
            all.push_back(strata.variable);
            wanted.boxes.push_back({strata.variable});
            wanted.members.emplace_back("Codes",
                                        ozm::AutomationValue::List(strata.codes.begin(), strata.codes.end()));
        }
        refuseTwice(data.dataSet(), std::move(all));
        estimation_.checkStart(covariates_.names());
        for (const std::string& text : at_)
            valuesAt_.push_back(covariates_.valuesAt(data, text));
        if (separate_) wanted.members.emplace_back("EqualCoefficientsDifferentBaselineH0", false);
        if (means_) wanted.members.emplace_back("MeanSubstitutionOfMD", true);
        if (estimation_.forDialog()) wanted.members.emplace_back("NonDefaultStartValuesIterations", true);
    }
    void fillIn(ozm::AutomationObject& dialog) override { estimation_.put(dialog); }
    bool answer(const ResultMessage& /*question*/) override { return estimation_.goesOn(); }

    [[nodiscard]] std::string advice() const override { return estimation_.advice(); }

    [[nodiscard]] bool isOnScreen(const Output& output) const override {
        return output.onScreen || (output.name == std::string_view{"stratified"} && strata_.isGiven());
    }
    [[nodiscard]] bool isMadeUnasked(const Output& output, const Script& /*script*/) const override {
        const std::string_view name = output.name;
        return name == "stratified" ? strata_.isGiven() : name != "plot-at" || !at_.empty();
    }
    void prepareOutputs(Script& script) override { level_.put(script); }
    [[nodiscard]] std::vector<Settings> settingsOf(const Output& output) const override {
        if (output.name != std::string_view{"plot-at"} || at_.empty())
            return SurvivalCommand::settingsOf(output);
        std::vector<Settings> all;
        for (const std::vector<double>& values : valuesAt_)
            all.push_back({{"CovariateValues", ozm::AutomationValue::List(values.begin(), values.end())}});
        return all;
    }

    CovariateOptions covariates_;
    GroupCodesOptions strata_{{.option = "--strata",
                               .help = "variable with strata: equal coefficients, a baseline hazard for each",
                               .codesOption = "--strata-codes",
                               .codesHelp = "its codes of the strata [all that selected cases have]"}};
    EstimationOptions estimation_;
    LevelOption level_;
    bool separate_ = false;
    bool means_ = false;
    std::vector<std::string> at_;
    std::vector<std::vector<double>> valuesAt_;
};

} // namespace

std::unique_ptr<Command> makeCoxCommand() {
    return std::make_unique<CoxCommand>();
}

} // namespace korvana::cli
