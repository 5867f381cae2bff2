#include "apps/cli/GroupsOptions.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalCommand.h"

namespace korvana::cli {
namespace {

class KSampleCommand final : public SurvivalCommand {
public:
    KSampleCommand()
        : SurvivalCommand({.title = "Comparing multiple samples",
                           .example = "trial.csv --time weeks --censor relapse --complete 1 --censored 0 "
                                      "--group arm",
                           .outputs = known()},
                          scSurComparingMultipleSamples, "SurKSamplesResults") {}

private:
    static constexpr int scSurComparingMultipleSamples = 4;
    static std::vector<Output> known() {
        return {
            {"summary", {"Summary"}, "the test by Gehan's scores, sums of scores by group", true},
            {"log-rank", {"LogRankTests"}, "with Tarone-Ware, Peto & Peto, trend, medians by group", true},
            {"pairs", {"PairwiseComparisons"}, "log-rank tests of two groups each, p after Holm", true},
            {"scores", {"ScoresByGroup"}, "of every case", false},
            {"descriptive", {"DescriptiveStatistics"}, "of the times by group", false},
            {"histogram", {"HistogramOfSumOfScoresByGroup"}, "", false, true},
            {"curves",
             {"CumulativeProportionSurvivingByGroup"},
             "Kaplan-Meier, all groups in one plot",
             false,
             true},
            {"life-tables", {"ProportionSurvivingByGroup"}, "one per group", false},
            {"plot", {"PlotOfProportionSurvivingByGroup"}, "proportion surviving per interval", false, true},
        };
    }

    void declareOptions(CLI::App& app) override {
        SurvivalCommand::declareOptions(app);
        groups_.declare(app);
    }
    void specify(const ActiveData& data, Specification& wanted) override {
        const Groups groups = groups_.resolve(data, wanted.timesAndCodes);
        wanted.boxes.push_back({groups.variable});
        wanted.members.emplace_back("Codes",
                                    ozm::AutomationValue::List(groups.codes.begin(), groups.codes.end()));
    }

    GroupCodesOptions groups_;
};

} // namespace

std::unique_ptr<Command> makeKSampleCommand() {
    return std::make_unique<KSampleCommand>();
}

} // namespace korvana::cli
