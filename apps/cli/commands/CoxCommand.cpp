#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/CovariateCommand.h"
#include "apps/cli/commands/StrataOptions.h"

#include <string_view>

namespace korvana::cli {
namespace {

class CoxCommand final : public CovariateCommand {
public:
    CoxCommand()
        : CovariateCommand({.title = "Cox regression",
                            .example = "trial.csv --time weeks --censor relapse --complete 1 --censored 0 "
                                       "--covariates age,arm:cat",
                            .outputs = known(),
                            .unasked = "all; stratified with --strata, plot-at with --at"},
                           {.criterion = "the estimates may be off by about as much, relative to their size",
                            .start = "start values of the coefficients, one for each covariate [0]",
                            .goesOn = "when the iterations are used up, do 30 more, up to ten times, rather "
                                      "than end without a result"}) {}

private:
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

    void declareModel(CLI::App& app) override { strata_.declare(app); }
    void checkOptions() override {
        strata_.check();
        CovariateCommand::checkOptions();
    }
    void keepCounting(const ActiveData& data, std::vector<std::uint8_t>& cases) const override {
        strata_.keepCounting(data, cases);
    }
    std::vector<int> specifyModel(const ActiveData& data, Specification& wanted) override {
        wanted.forms = {{{"TypeOfSurvivalRegressionModel", scSurProportionalHazardRegression}}};
        if (strata_.separate()) wanted.members.emplace_back("EqualCoefficientsDifferentBaselineH0", false);
        if (!strata_.isGiven()) return {};
        const Groups strata = strata_.resolve(data, wanted.timesAndCodes);
        wanted.boxes.push_back({strata.variable});
        wanted.members.emplace_back("Codes",
                                    ozm::AutomationValue::List(strata.codes.begin(), strata.codes.end()));
        return {strata.variable};
    }

    [[nodiscard]] bool isOnScreen(const Output& output) const override {
        return output.onScreen || (output.name == std::string_view{"stratified"} && strata_.isGiven());
    }
    [[nodiscard]] bool isMadeUnasked(const Output& output, const Script& script) const override {
        if (output.name == std::string_view{"stratified"}) return strata_.isGiven();
        return CovariateCommand::isMadeUnasked(output, script);
    }

    StrataOptions strata_;
};

} // namespace

std::unique_ptr<Command> makeCoxCommand() {
    return std::make_unique<CoxCommand>();
}

} // namespace korvana::cli
