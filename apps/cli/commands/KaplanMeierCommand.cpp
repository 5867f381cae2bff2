#include "apps/cli/AnalysisCommand.h"
#include "apps/cli/TimesAndCodes.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalModule.h"
#include "host/data/NumberText.h"

namespace korvana::cli {
namespace {

class KaplanMeierCommand final : public AnalysisCommand {
    [[nodiscard]] std::string title() const override { return "Kaplan-Meier"; }
    [[nodiscard]] Analysis load() const override { return loadSurvivalModule(); }

    [[nodiscard]] std::span<const Output> outputs() const override {
        static constexpr Output known[] = {
            {"summary", {"Summary"}, "", true},
            {"percentiles", {"PercentilesOfSurvivalFunction"}, "", true},
            {"curve", {"SurvivalCurve"}, "survival against time, of all observations", false, true},
            {"plot-1",
             {"PlotOfSurvivalTimesVsCumProportionSurviving"},
             "the same of the first 32,000",
             false,
             true},
            {"plot-2", {"PlotOfLogSurvivalTimesVsCumProportionSurviving"}, "against log time", false, true},
            {"plot-3",
             {"PlotOfLogSurvivalTimesVsLogCumProportionSurviving"},
             "log survival against log time",
             false,
             true},
        };
        return known;
    }

    /// Plots of the first observations would mislead where there are more: then the curve is made for them.
    [[nodiscard]] bool isMadeUnasked(const Output& output, const Script& script) const override {
        const std::string_view name = output.name;
        if (name != "curve" && !name.starts_with("plot")) return true;
        const bool curve = script.get("DefaultPlot") == ozm::AutomationValue{"SurvivalCurve"};
        return curve == (name == "curve");
    }
    [[nodiscard]] std::string unasked() const override {
        return "all but curve; above 32,000 observations all but the plots";
    }

    [[nodiscard]] std::string example() const override {
        return "trial.csv --time weeks --censor relapse --complete 1 --censored 0";
    }

    void declareOptions(CLI::App& app) override {
        variables_.declare(app);
        app.add_option("--level", level_, "confidence level of limits, from 0 to 1 [0.95]")
            ->type_name("P")
            ->group("Output");
    }

    void check() override {
        if (level_.empty()) return;
        const NumberText number = readNumber(level_);
        if (number.form != NumberForm::Finite || number.value < 0.0 || number.value > 1.0)
            throw UsageError("--level is a number from 0 to 1, such as 0.95, not '" + level_ + "'");
    }

    std::vector<std::string> check(const ActiveData& data) override {
        wanted_ = variables_.resolve(data);
        return wanted_.notes;
    }

    bool compute(Script& script) override {
        constexpr int scSurKaplanMeierProductLimit = 2;
        script.put("TypeOfAnalysis", scSurKaplanMeierProductLimit);
        script.press("OK");
        script.put("Variables", wanted_.variables());
        script.put("CodeForCompleteResponses", wanted_.complete);
        script.put("CodeForCensoredResponses", wanted_.censored);
        script.press("OK");
        return script.isAt("SurKaplanMeierResults");
    }

    void prepareOutputs(Script& script) override {
        if (!level_.empty()) script.put("ConfidenceLevel", readNumber(level_).value);
    }

    TimesAndCodesOptions variables_;
    TimesAndCodes wanted_;
    std::string level_;
};

} // namespace

std::unique_ptr<Command> makeKaplanMeierCommand() {
    return std::make_unique<KaplanMeierCommand>();
}

} // namespace korvana::cli
