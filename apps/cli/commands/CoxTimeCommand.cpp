#include "apps/cli/LevelOption.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/EstimationOptions.h"
#include "apps/cli/commands/ExpressionOptions.h"
#include "apps/cli/commands/StrataOptions.h"
#include "apps/cli/commands/SurvivalCommand.h"

#include <string_view>

namespace korvana::cli {
namespace {

constexpr int scSurTimeDependentCovariates = 6;

class CoxTimeCommand final : public SurvivalCommand {
public:
    CoxTimeCommand()
        : SurvivalCommand({.title = "Cox regression with time-dependent covariates",
                           .example = "trial.csv --time weeks --censor relapse --complete 1 --censored 0 "
                                      "--covariate 'drug = drug' --covariate 'drugT = drug * log(T_)'",
                           .outputs = known(),
                           .unasked = "all; stratified with --strata"},
                          scSurTimeDependentCovariates, "SurRegressionResults") {}

private:
    static std::vector<Output> known() {
        return {
            {"summary", {"Summary"}, "the fit, its tests, the parameter estimates", true},
            {"covariances", {"ParameterCovariancesCorrelations"}, "and correlations of the estimates", false},
            {"stratified",
             {"StratitifiedAnalysis"},
             "each stratum fitted alone, against the common fit",
             false},
            {"means", {"MeansAndStandardDeviations"}, "of the covariates, each at its case's time", false},
            {"forest", {"ForestPlot"}, "hazard ratios with limits", false, true},
        };
    }
    static bool isStratified(const Output& output) { return output.name == std::string_view{"stratified"}; }

    void declareOptions(CLI::App& app) override {
        SurvivalCommand::declareOptions(app);
        expressions_.declare(app);
        strata_.declare(app);
        app.add_flag("--mean-substitution", means_,
                     "a missing value of a variable in an expression is taken for the variable's mean [the "
                     "case is left out]")
            ->group("Estimation");
        estimation_.declare(app);
        level_.declare(app);
    }
    void checkOptions() override {
        expressions_.check();
        strata_.check();
        estimation_.check();
        level_.check(LevelOption::Ends::Excluded);
    }
    void specify(const ActiveData& data, Specification& wanted) override {
        expressions_.check(data.dataSet());
        if (strata_.isGiven()) {
            const Groups strata = strata_.resolve(data, wanted.timesAndCodes);
            wanted.boxes.push_back({strata.variable});
            wanted.members.emplace_back("Codes",
                                        ozm::AutomationValue::List(strata.codes.begin(), strata.codes.end()));
        }
        if (strata_.separate()) wanted.members.emplace_back("EqualCoefficientsDifferentBaselineH0", false);
        if (means_) wanted.members.emplace_back("MeanSubstitutionOfMD", true);
        if (estimation_.forDialog()) wanted.members.emplace_back("NonDefaultStartValuesIterations", true);
    }
    bool finishSpecification(Script& script) override {
        expressions_.put(script);
        estimation_.checkStart(expressions_.names(), {});
        expressions_.save(script);
        return true;
    }

    void begin(std::size_t /*run*/) override { estimation_.begin(); }
    void fillIn(ozm::AutomationObject& dialog) override { estimation_.put(dialog); }
    bool answer(const ResultMessage& question) override {
        constexpr int overwriteOrAppend =
            21508; // of a file that has a name twice; a model refuses that later
        return question.id != overwriteOrAppend && estimation_.goesOn();
    }
    [[nodiscard]] std::string advice(int /*message*/) const override { return estimation_.advice(); }
    void prepareOutputs(Script& script) override { level_.put(script); }
    [[nodiscard]] bool isOnScreen(const Output& output) const override {
        return output.onScreen || (isStratified(output) && strata_.isGiven());
    }
    [[nodiscard]] bool isMadeUnasked(const Output& output, const Script& script) const override {
        return isStratified(output) ? strata_.isGiven() : SurvivalCommand::isMadeUnasked(output, script);
    }

    ExpressionOptions expressions_;
    StrataOptions strata_;
    EstimationOptions estimation_{
        {.criterion = "the estimates may be off by about as much, relative to their size",
         .start = "start values of the coefficients, one for each covariate [0]",
         .goesOn = "when the iterations are used up, do 30 more, up to ten times, rather than end without a "
                   "result"}};
    LevelOption level_;
    bool means_ = false;
};

} // namespace

std::unique_ptr<Command> makeCoxTimeCommand() {
    return std::make_unique<CoxTimeCommand>();
}

} // namespace korvana::cli
