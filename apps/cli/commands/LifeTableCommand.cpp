#include "apps/cli/LevelOption.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/LifeTableOptions.h"
#include "apps/cli/commands/SurvivalCommand.h"

#include <string_view>

namespace korvana::cli {
namespace {

class LifeTableCommand final : public SurvivalCommand {
public:
    LifeTableCommand()
        : SurvivalCommand({.title = "Life table and fitted distributions",
                           .example = "trial.csv --time weeks --censor relapse --complete 1 --censored 0 "
                                      "--intervals 10",
                           .outputs = known()},
                          scSurLifeTablesAndDistributions, "SurLifeTableResults") {}

private:
    static constexpr int scSurLifeTablesAndDistributions = 1;
    static std::vector<Output> known() {
        return {
            {"summary", {"Summary"}, "the life table", true},
            {"parameters", {"ParameterEstimates"}, "of four models with three weightings each", true},
            {"ranking", {"RankingOfFits"}, "of the twelve fits, which of them are adequate", true},
            {"survival-times", {"SurvivalTimes"}, "by proportion surviving, with limits", false},
            {"survival-at-times", {"SurvivalAtTimes"}, "of the fits, with limits", false},
            {"hazard", {"HazardFunction"}, "fitted, a table for each model", false},
            {"survival", {"SurvivalFunction"}, "the same", false},
            {"density", {"ProbabilityDensityFunction"}, "the same", false},
            {"plot-hazard", {"PlotOfHazardFunction"}, "observed and fitted, for each model", false, true},
            {"plot-survival", {"PlotOfSurvivalFunction"}, "the same", false, true},
            {"plot-density", {"PlotOfProbabilityDensityFunction"}, "the same", false, true},
            {"plot-models",
             {"PlotOfAllModels"},
             "survival by the four models, for each weighting",
             false,
             true},
        };
    }

    [[nodiscard]] std::vector<std::string> choices(const std::string& option) const override {
        const auto known = LifeTableFitOptions::choices(option);
        if (known.empty()) return SurvivalCommand::choices(option);
        return {known.begin(), known.end()};
    }
    void declareOptions(CLI::App& app) override {
        SurvivalCommand::declareOptions(app);
        input_.declare(app);
        fits_.declare(app);
        level_.declare(app);
    }
    void checkOptions() override {
        input_.check(givenForCases());
        if (!input_.isTable() && givenForCases().empty())
            throw UsageError(
                "which data? Name the variable with the times by --time, or the three of a table "
                "by --table",
                true);
        fits_.check();
        level_.check(LevelOption::Ends::Excluded);
    }
    [[nodiscard]] bool hasCases() const override { return !input_.isTable(); }
    void specify(const ActiveData& data, Specification& wanted) override {
        if (input_.isTable()) {
            constexpr int scSurTableOfSurvivalTimes = 2;
            wanted.forms = {{{"TypeOfInputData", scSurTableOfSurvivalTimes}}};
            for (const int variable : input_.tableVariables(data.dataSet()))
                wanted.boxes.push_back({variable});
        }
        for (auto& member : input_.members())
            wanted.members.push_back(std::move(member));
    }

    /// What an option is about is shown.
    [[nodiscard]] bool isOnScreen(const Output& output) const override {
        const std::string_view name = output.name;
        if (name == "survival-times") return !fits_.proportions().empty();
        if (name == "survival-at-times") return !fits_.times().empty();
        if (isOfModel(name) && !output.isChart) return fits_.namesDistributions();
        return output.onScreen;
    }
    void prepareOutputs(Script& script) override {
        level_.put(script);
        if (!fits_.proportions().empty()) script.put("ProportionsSurviving", fits_.proportions());
        if (!fits_.times().empty()) script.put("Times", fits_.times());
    }
    [[nodiscard]] std::vector<Settings> settingsOf(const Output& output) const override {
        const std::string_view name = output.name;
        if (name == "plot-models") return each("Weighting", fits_.weightings());
        if (isOfModel(name)) return each("Distribution", fits_.distributions());
        return SurvivalCommand::settingsOf(output);
    }

    static bool isOfModel(std::string_view output) {
        if (output.starts_with("plot-")) output.remove_prefix(5);
        return output == "hazard" || output == "survival" || output == "density";
    }
    static std::vector<Settings> each(const char* member, const std::vector<int>& values) {
        std::vector<Settings> all;
        for (const int value : values)
            all.push_back({{member, value}});
        return all;
    }

    LifeTableInputOptions input_;
    LifeTableFitOptions fits_;
    LevelOption level_;
};

} // namespace

std::unique_ptr<Command> makeLifeTableCommand() {
    return std::make_unique<LifeTableCommand>();
}

} // namespace korvana::cli
