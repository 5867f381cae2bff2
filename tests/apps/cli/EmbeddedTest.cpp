#include "apps/cli/EmbeddedCall.h"
#include "apps/cli/UsageError.h"
#include "host/data/DataError.h"
#include "host/data/ReadData.h"
#include "host/results/JsonWriter.h"
#include "tests/apps/cli/Cli.h"

#include <nlohmann/json.hpp>

namespace korvana::cli {
namespace {

using nlohmann::json;
using Options = std::vector<GivenOption>;

struct EmbeddedTest : CliTest {
    static json jsonOf(const ResultsBook& book) {
        std::ostringstream out;
        writeJson(book, out);
        return json::parse(out.str());
    }
    /// The results of the command itself, whose options are the same.
    json fromCommand(const std::string& name, const std::string& file, const Options& options) const {
        std::vector<std::string> words{name, file, "--format", "json"};
        for (const GivenOption& option : options) {
            words.push_back("--" + option.name);
            std::string list;
            for (const std::string& value : option.values)
                list += (list.empty() ? "" : ",") + value;
            if (!list.empty()) words.push_back(list);
        }
        const Outcome outcome = runWords(words);
        EXPECT_EQ(outcome.code, ExitResults) << outcome.err;
        return json::parse(outcome.out);
    }
    /// Everything but the time at which it was made.
    static json withoutTimes(json value) {
        if (value.is_object()) value.erase("made");
        if (value.is_structured())
            for (json& each : value)
                each = withoutTimes(each);
        return value;
    }
    void expectTheSame(const std::string& name, const std::string& file, const Options& options) const {
        SCOPED_TRACE(name);
        const json wanted = withoutTimes(fromCommand(name, file, options));
        EXPECT_EQ(withoutTimes(jsonOf(callCommand(name, file, options, {}))), wanted);
        Embedding embedding;
        embedding.data = readData(file);
        EXPECT_EQ(withoutTimes(jsonOf(callCommand(name, {}, options, std::move(embedding)))), wanted);
    }
    static Options cases(const std::string& complete = "1", const std::string& censored = "0") {
        return {
            {"time", {"time"}}, {"censor", {"status"}}, {"complete", {complete}}, {"censored", {censored}}};
    }
    static Options with(Options options, const Options& more) {
        options.insert(options.end(), more.begin(), more.end());
        return options;
    }

    const std::string aml = example("aml.csv");
};

TEST_F(EmbeddedTest, EveryAnalysisGivesTheBookOfItsCommand) {
    const Options groups{{"group", {"group"}}, {"group1", {"Maintained"}}, {"group2", {"Nonmaintained"}}};
    expectTheSame("kaplan-meier", aml, with(cases(), {{"outputs", {"all"}}, {"level", {"0.9"}}}));
    expectTheSame("two-sample", aml, with(cases(), groups));
    expectTheSame("k-sample", aml, with(cases(), {{"group", {"group"}}, {"outputs", {"summary", "pairs"}}}));
    expectTheSame("life-table", aml, with(cases(), {{"intervals", {"5"}}, {"no-correction", {}}}));
    expectTheSame("cox", aml, with(cases(), {{"covariates", {"group:cat"}}, {"outputs", {"all"}}}));
    expectTheSame("regression", aml, with(cases(), {{"model", {"all"}}, {"covariates", {"group:cat"}}}));
    expectTheSame("cox-time", aml,
                  with(cases(), {{"covariate", {"g = (group = 'Maintained') * log(T_ + 1)"}}}));
}

TEST_F(EmbeddedTest, OnlyWhatIsAskedForIsMade) {
    const ResultsBook usual = callCommand("kaplan-meier", aml, cases(), {});
    EXPECT_TRUE(usual.all<Chart>().empty());
    EXPECT_FALSE(usual.outputs.empty());
    const ResultsBook curve = callCommand("kaplan-meier", aml, with(cases(), {{"outputs", {"curve"}}}), {});
    EXPECT_EQ(curve.outputs.size(), curve.all<Chart>().size());
}

TEST_F(EmbeddedTest, WhatIsWrongIsThrownAndTheNextCallIsNotHarmed) {
    const auto refuses = [&](const Options& options, const std::string& said) {
        try {
            (void)callCommand("kaplan-meier", aml, options, {});
            ADD_FAILURE() << "taken: " << said;
        } catch (const UsageError& error) {
            EXPECT_TRUE(has(error.what(), said)) << error.what();
        }
        EXPECT_EQ(callCommand("kaplan-meier", aml, cases(), {}).status, 0);
    };
    refuses({{"time", {"time"}}}, "--censor is missing");
    refuses(with(cases(), {{"levle", {"0.9"}}}), "did you mean 'level'");
    refuses(with(cases(), {{"level", {"2"}}}), "--level is a number");
    refuses(with(cases(), {{"level", {"0.5", "0.6"}}}), "--level takes one value");
    refuses(with(cases(), {{"time", {"time"}}}), "--time is given twice");
    refuses(with(cases(), {{"weight", {" "}}}), "--weight has an empty value");
    refuses(with(cases(), {{"output", {"folder"}}}), "no option --output");
    EXPECT_FALSE(std::filesystem::exists("folder"));
    EXPECT_THROW((void)callCommand("kaplan-meier", "none.csv", cases(), {}), DataError);
    EXPECT_THROW((void)callCommand("info", aml, {}, {}), UsageError);
    Embedding embedding;
    embedding.data = readData(aml);
    EXPECT_THROW((void)callCommand("kaplan-meier", {}, with(cases(), {{"header", {}}}), std::move(embedding)),
                 UsageError);
}

TEST_F(EmbeddedTest, ARefusalHasTheNumberOfItsMessage) {
    const std::string one = file("one.csv", "time,status,x\n1,1,2\n2,0,2\n3,1,2\n");
    try {
        (void)callCommand("cox", one, with(cases(), {{"covariates", {"x"}}}), {});
        FAIL() << "it has a covariate without variance";
    } catch (const CallRefused& refused) {
        const Outcome outcome = run("cox one.csv --time time --censor status --complete 1 --censored 0 "
                                    "--covariates x");
        EXPECT_EQ(outcome.code, ExitRefused);
        const std::string said = "message " + std::to_string(refused.message().id) + ": " + refused.what();
        EXPECT_TRUE(has(outcome.err, said)) << said << "\n" << outcome.err;
        EXPECT_FALSE(refused.messages().empty());
    }
    EXPECT_EQ(callCommand("kaplan-meier", aml, cases(), {}).status, 0);
}

TEST_F(EmbeddedTest, AStopEndsTheCall) {
    StopSignals stops;
    stops.requestStop();
    Embedding embedding;
    embedding.stops = &stops;
    EXPECT_THROW((void)callCommand("kaplan-meier", aml, cases(), std::move(embedding)), CallStopped);
    EXPECT_EQ(callCommand("kaplan-meier", aml, cases(), {}).status, 0);
}

TEST_F(EmbeddedTest, RemarksStandInTheBook) {
    const std::string three = file("three.csv", "time,status\n1,1\n2,1\n3,1\n4,2\n");
    const ResultsBook book = callCommand("kaplan-meier", three, cases(), {});
    const bool warned = std::ranges::any_of(book.messages, [](const ResultMessage& message) {
        return message.severity == ResultMessage::Severity::Warning && has(message.text, "--censored 0");
    });
    EXPECT_TRUE(warned);
}

TEST_F(EmbeddedTest, EachCommandTellsItsOptionsAndOutputs) {
    const std::vector<ProgramCommand> all = programCommands();
    EXPECT_EQ(all.size(), 7U);
    for (const ProgramCommand& command : all) {
        EXPECT_FALSE(command.outputs.empty()) << command.name;
        std::string names;
        for (const ProgramOption& option : command.options) {
            EXPECT_FALSE(option.help.empty()) << option.name;
            names += " " + option.name + " ";
        }
        EXPECT_TRUE(has(names, " censor ")) << names;
        for (const char* const ofPrograms : {" output ", " format ", " quiet ", " timing ", " help "})
            EXPECT_FALSE(has(names, ofPrograms)) << command.name << ofPrograms;
    }
}

} // namespace
} // namespace korvana::cli
