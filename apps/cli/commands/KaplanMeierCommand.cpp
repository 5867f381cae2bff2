#include "apps/cli/LevelOption.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalCommand.h"

namespace korvana::cli {
namespace {

class KaplanMeierCommand final : public SurvivalCommand {
public:
    KaplanMeierCommand()
        : SurvivalCommand({.title = "Kaplan-Meier",
                           .example = "trial.csv --time weeks --censor relapse --complete 1 --censored 0",
                           .outputs = known(),
                           .unasked = "all but curve; above 32,000 observations all but the plots"},
                          scSurKaplanMeierProductLimit, "SurKaplanMeierResults") {}

private:
    static constexpr int scSurKaplanMeierProductLimit = 2;
    static std::vector<Output> known() {
        return {
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
    }

    /// Where there are more observations than the plots show, the plots would mislead: the curve is made
    /// instead.
    [[nodiscard]] bool isMadeUnasked(const Output& output, const Script& script) const override {
        const std::string_view name = output.name;
        if (name != "curve" && !name.starts_with("plot")) return true;
        const bool curve = script.get("DefaultPlot") == ozm::AutomationValue{"SurvivalCurve"};
        return curve == (name == "curve");
    }

    void declareOptions(CLI::App& app) override {
        SurvivalCommand::declareOptions(app);
        level_.declare(app);
    }
    void checkOptions() override { level_.check(); }
    void prepareOutputs(Script& script) override { level_.put(script); }

    LevelOption level_;
};

} // namespace

std::unique_ptr<Command> makeKaplanMeierCommand() {
    return std::make_unique<KaplanMeierCommand>();
}

} // namespace korvana::cli
