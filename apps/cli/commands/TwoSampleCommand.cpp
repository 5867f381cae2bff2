#include "apps/cli/GroupsOptions.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalCommand.h"

namespace korvana::cli {
namespace {

class TwoSampleCommand final : public SurvivalCommand {
public:
    TwoSampleCommand()
        : SurvivalCommand({.title = "Comparing two samples",
                           .example = "trial.csv --time weeks --censor relapse --complete 1 --censored 0 "
                                      "--group arm --group1 treated --group2 placebo",
                           .outputs = known()},
                          scSurComparingTwoSamples, "SurTwoSamplesResults") {}

private:
    static constexpr int scSurComparingTwoSamples = 3;
    static std::vector<Output> known() {
        return {
            {"summary", {"Summary"}, "the five tests side by side", true},
            {"gehan", {"GehanWilcoxonTest"}, "", false},
            {"cox-f", {"CoxFTest"}, "", false},
            {"cox-mantel", {"CoxMantelTest"}, "", false},
            {"log-rank", {"LogRankTest"}, "", false},
            {"peto", {"PetoPetoWilcoxonTest"}, "", false},
            {"life-tables", {"ProportionSurvivingByGroup"}, "of both groups", true},
            {"plots",
             {"PlotOfProportionSurvivingByGroup", "CumulativeProportionSurvivingByGroup"},
             "proportion surviving by group, per interval and cumulative",
             false,
             true},
        };
    }

    void declareOptions(CLI::App& app) override {
        SurvivalCommand::declareOptions(app);
        groups_.declare(app);
    }
    void specify(const ActiveData& data, Specification& wanted) override {
        const Groups groups = groups_.resolve(data, wanted.timesAndCodes);
        wanted.boxes.push_back({groups.variable});
        wanted.members.emplace_back("CodeForGroup1", groups.codes[0]);
        wanted.members.emplace_back("CodeForGroup2", groups.codes[1]);
    }

    TwoGroupsOptions groups_;
};

} // namespace

std::unique_ptr<Command> makeTwoSampleCommand() {
    return std::make_unique<TwoSampleCommand>();
}

} // namespace korvana::cli
