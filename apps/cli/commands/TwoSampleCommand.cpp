#include "apps/cli/AnalysisCommand.h"
#include "apps/cli/CodeChecks.h"
#include "apps/cli/DataOptions.h"
#include "apps/cli/TimesAndCodes.h"
#include "apps/cli/UsageError.h"
#include "apps/cli/commands/Commands.h"
#include "apps/cli/commands/SurvivalModule.h"
#include "host/data/NumberText.h"

#include <array>

namespace korvana::cli {
namespace {

class TwoSampleCommand final : public AnalysisCommand {
    [[nodiscard]] std::string title() const override { return "Comparing two samples"; }
    [[nodiscard]] Analysis load() const override { return loadSurvivalModule(); }

    [[nodiscard]] std::span<const Output> outputs() const override {
        static constexpr Output known[] = {
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
        return known;
    }

    [[nodiscard]] std::string example() const override {
        return "trial.csv --time weeks --censor relapse --complete 1 --censored 0 --group arm "
               "--group1 treated --group2 placebo";
    }

    void declareOptions(CLI::App& app) override {
        variables_.declare(app);
        const std::string group = TimesAndCodesOptions::helpGroup;
        app.add_option("--group", group_, "variable with the groups")->type_name("V")->group(group);
        app.add_option("--group1", code1_, "its code for group 1")->type_name("CODE")->group(group);
        app.add_option("--group2", code2_, "its code for group 2")->type_name("CODE")->group(group);
    }

    using AnalysisCommand::check;
    std::vector<std::string> check(const ActiveData& data) override {
        wanted_ = variables_.resolve(data);
        checkGroups(data);
        return wanted_.notes;
    }

    void checkGroups(const ActiveData& data) {
        if (group_.empty()) throw UsageError("--group is missing: name the variable with the groups", true);
        const int group = variableOf(data.dataSet(), "--group", group_);
        groupVariable_ = group + 1;
        std::vector<int> variables{group, wanted_.censor - 1};
        for (const int time : wanted_.times)
            variables.push_back(time - 1);
        refuseTwice(data.dataSet(), variables);
        const CodePair codes{{"--group1", code1_}, {"--group2", code2_}, "the codes of the two groups"};
        groups_ = resolveCodes(data, group, codes);
        if (groups_[0] == groups_[1]) return; // the analysis says so itself
        const CodeCounts counts = countCodes(data, group, groups_[0], groups_[1]);
        const auto present = [&](const char* option, double code, int cases) {
            if (cases == 0)
                throw UsageError(std::string{option} + " " + numberText(code) + ": no case has this code; " +
                                 codesOf(data, group));
        };
        present("--group1", groups_[0], counts.first);
        present("--group2", groups_[1], counts.second);
    }

    bool compute(Script& script) override {
        constexpr int scSurComparingTwoSamples = 3;
        script.put("TypeOfAnalysis", scSurComparingTwoSamples);
        script.press("OK");
        script.put("Variables", wanted_.variables(groupVariable_));
        script.put("CodeForCompleteResponses", wanted_.complete);
        script.put("CodeForCensoredResponses", wanted_.censored);
        script.put("CodeForGroup1", groups_[0]);
        script.put("CodeForGroup2", groups_[1]);
        script.press("OK");
        return script.isAt("SurTwoSamplesResults");
    }

    TimesAndCodesOptions variables_;
    TimesAndCodes wanted_;
    std::string group_;
    std::string code1_;
    std::string code2_;
    int groupVariable_ = 0; ///< from 1
    std::array<double, 2> groups_{};
};

} // namespace

std::unique_ptr<Command> makeTwoSampleCommand() {
    return std::make_unique<TwoSampleCommand>();
}

} // namespace korvana::cli
