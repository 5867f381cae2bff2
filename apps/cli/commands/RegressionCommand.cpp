#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/CovariateCommand.h"

#include "host/data/NameMatch.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace korvana::cli {
namespace {

struct Model {
    std::string_view name;
    int kind; ///< member of SurRegressionModel
    bool hasSigma;
    bool hasRatios;
};
constexpr std::array<Model, 3> models{
    {{"exponential", 2, false, true}, {"lognormal", 3, true, true}, {"normal", 4, true, false}}};
constexpr std::string_view all = "all";

class RegressionCommand final : public CovariateCommand {
public:
    RegressionCommand()
        : CovariateCommand(
              {.title = "Parametric regression",
               .example = "trial.csv --model lognormal --time weeks --censor relapse --complete 1 "
                          "--censored 0 --covariates age,arm:cat",
               .outputs = known(),
               .unasked = "all; comparison with --model all, plot-at with --at"},
              {.criterion =
                   "exponential: relative to the estimates; lognormal and normal: the largest change of "
                   "any parameter in an iteration, which may be less than its distance from the maximum",
               .start = "start values: the coefficients, one for each covariate, then the constant, then "
                        "sigma where the model has it [the model's own]",
               .goesOn =
                   "lognormal and normal: when the iterations are used up, do 30 more, up to ten times, "
                   "rather than end without a result; the model without covariates is fitted with "
                   "--max-iterations alone"}) {}

private:
    static std::vector<Output> known() {
        return {
            {"summary", {"Summary"}, "the fit, its test, the parameter estimates", true},
            {"covariances", {"ParameterCovariancesCorrelations"}, "and correlations of the estimates", false},
            {"means", {"MeansAndStandardDeviations"}, "of the covariates", false},
            {"survival-table", {"SurvivalTable"}, "survival at the means", false},
            {"residuals", {"Residuals"}, "of every case", false},
            {"plot-survival", {"Plot1"}, "survival at the means and Kaplan-Meier", false, true},
            {"plot-residuals", {"Plot2"}, "Cox-Snell, or normal probability", false, true},
            {"plot-predictor", {"Plot3"}, "residuals and linear predictor", false, true},
            {"forest", {"ForestPlot"}, "ratios of survival times; not normal", false, true},
            {"comparison", {"ModelComparison"}, "of the three models: log-likelihoods, AIC", false},
            // The last, as its values are settings of the results dialog.
            {"plot-at", {"UserDefinedPlot"}, "survival at each --at, with limits", false, true},
        };
    }
    static bool isComparison(const Output& output) { return output.name == std::string_view{"comparison"}; }

    [[nodiscard]] std::vector<std::string> choices(const std::string& option) const override {
        if (option != "model") return CovariateCommand::choices(option);
        std::vector<std::string> names;
        for (const Model& model : models)
            names.emplace_back(model.name);
        names.emplace_back(all);
        return names;
    }
    void declareModel(CLI::App& app) override {
        app.add_option("--model", model_,
                       "the distribution of the survival times: exponential, lognormal or normal; all fits "
                       "each of them to the same cases, and compares them")
            ->type_name("M")
            ->group(TimesAndCodesOptions::helpGroup);
    }
    void checkOptions() override {
        const std::vector<std::string> known = choices("model");
        const std::string list = "exponential, lognormal or normal, or all of them (all)";
        if (model_.empty()) throw UsageError("--model is missing: " + list, true);
        if (std::ranges::find(known, model_) == known.end())
            throw UsageError("--model is " + list + ", not '" + model_ + "'" +
                             didYouMean(nearestOf(model_, {known.begin(), known.end()}, 3)));
        for (const Model& model : models)
            if (model_ == model.name || isAll()) chosen_.push_back(model);
        if (isAll() && estimation().startIsGiven())
            throw UsageError("--start needs one model: those of --model all have different parameters");
        if (!isAll() && !chosen_.front().hasSigma && estimation().mayGoOn())
            throw UsageError(
                "--continue is for the lognormal and normal models; --max-iterations allows up to "
                "200 iterations");
        CovariateCommand::checkOptions();
    }
    [[nodiscard]] bool isAll() const { return model_ == all; }

    std::vector<int> specifyModel(const ActiveData& /*data*/, Specification& wanted) override {
        wanted.forms.clear();
        for (const Model& model : chosen_)
            wanted.forms.push_back({{"TypeOfSurvivalRegressionModel", model.kind}});
        return {};
    }
    [[nodiscard]] std::vector<std::string> furtherParameters() const override {
        if (chosen_.front().hasSigma) return {"Constant", "Sigma"};
        return {"Constant"};
    }

    [[nodiscard]] std::vector<std::string> runs() const override {
        if (!isAll()) return CovariateCommand::runs();
        std::vector<std::string> names;
        for (const Model& model : chosen_)
            names.emplace_back(model.name);
        return names;
    }
    [[nodiscard]] std::string advice(int message) const override {
        constexpr int tooManyIterations = 21119; // of the exponential model, which does not ask for more
        if (message == tooManyIterations)
            return "for more iterations: --max-iterations N, up to 200; for start values: --start";
        return CovariateCommand::advice(message);
    }
    [[nodiscard]] bool isOfAllRuns(const Output& output) const override {
        return isAll() && (isComparison(output) || output.name == std::string_view{"means"});
    }
    [[nodiscard]] bool isOnScreen(const Output& output) const override {
        return output.onScreen || (isAll() && isComparison(output));
    }
    [[nodiscard]] bool isMadeUnasked(const Output& output, const Script& script) const override {
        if (isComparison(output)) return isAll();
        if (output.name == std::string_view{"forest"}) return current_->hasRatios;
        return CovariateCommand::isMadeUnasked(output, script);
    }

    void begin(std::size_t run) override {
        CovariateCommand::begin(run);
        current_ = &chosen_[run];
    }
    /// Ratios are drawn where exp(beta) is one.
    [[nodiscard]] std::vector<Settings> settingsOf(const Output& output) const override {
        if (isAll() && output.name == std::string_view{"forest"} && !current_->hasRatios) return {};
        return CovariateCommand::settingsOf(output);
    }

    std::string model_;
    std::vector<Model> chosen_; ///< for each run
    const Model* current_ = nullptr;
};

} // namespace

std::unique_ptr<Command> makeRegressionCommand() {
    return std::make_unique<RegressionCommand>();
}

} // namespace korvana::cli
