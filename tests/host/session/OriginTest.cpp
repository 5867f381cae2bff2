#include "host/data/ReadData.h"
#include "host/results/DataFile.h"
#include "host/results/OriginText.h"
#include "host/results/RecordedScript.h"
#include "support/dialogs/ControlText.h"
#include "tests/host/session/TinyAnalysis.h"
#include "tests/support/Refusal.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include <gtest/gtest.h>

namespace korvana {
namespace {

/// Three cases of two variables; 4 is missing in the first, whose 2 has a label.
DataSet data() {
    DataSet data = tiny::DataOf({{1, 2, 4}, {1, 2, 3}});
    data.variable(0).missingCode = 4;
    data.variable(0).valueLabels = {{2, "two"}};
    return data;
}

struct OriginTest : tiny::TinySession {
    OriginTest() { session.data().open(data()); }
    const OutputOrigin& origin(std::size_t place) { return origin(session.book(), place); }
    static const OutputOrigin& origin(const ResultsBook& book, std::size_t place) {
        return *ResultsBook::originOf(book.outputs.at(place));
    }
};

TEST_F(OriginTest, AnOutputTellsButtonDataAndSettings) {
    session.data().select("x2 < 3");
    session.data().weightBy("x2");
    session.start();
    put("Code", 2.0);
    specify(1);
    put("Digits", 5);
    const auto before = std::chrono::system_clock::now();
    call("Write");
    ASSERT_EQ(session.book().outputs.size(), 3U);
    for (std::size_t place = 1; place < 3; ++place)
        EXPECT_EQ(&origin(place), &origin(0)) << "one press, one origin";
    const OutputOrigin& origin = this->origin(0);
    EXPECT_EQ(origin.id, "Write");
    EXPECT_EQ(origin.label, "Write & show");
    EXPECT_GE(origin.made, before);
    ASSERT_EQ(origin.settings.size(), 1U);
    EXPECT_EQ(origin.settings[0].id, "Digits");
    EXPECT_EQ(std::get<int>(origin.settings[0].value), 5);

    const RunOrigin& run = *origin.run;
    EXPECT_EQ(run.data.file, "folder/tiny.csv");
    EXPECT_EQ(run.data.selectedCases, 2);
    ASSERT_EQ(run.missingCodes.size(), 1U);
    EXPECT_EQ(run.missingCodes[0].variable, "x1");
    EXPECT_EQ(run.missingCodes[0].code, 4);
    ASSERT_EQ(run.dialogs.size(), 1U);
    const auto& settings = run.dialogs[0].settings;
    ASSERT_EQ(settings.size(), 4U);
    EXPECT_EQ(settings[2].label, "Code to sum");
    EXPECT_EQ(std::get<Setting::Code>(settings[2].value), (Setting::Code{2.0, "two"}));
}

/// The origin of results is the data at the time of the run, whatever changes before a button is pressed.
TEST_F(OriginTest, ResultsKeepTheStateOfTheirRun) {
    const auto ofThese = [this] { return session.run()->data == session.data().state(); };
    session.start();
    EXPECT_EQ(session.run(), nullptr);
    specify(1);
    EXPECT_TRUE(ofThese());

    session.data().select("x1 = 1");
    EXPECT_FALSE(ofThese());
    call("Write");
    EXPECT_EQ(origin(0).run->data.selectedCases, 3);
    EXPECT_EQ(origin(0).run->remarks, std::vector<std::string>{"1 left out."});
    session.data().select("");
    EXPECT_TRUE(ofThese()) << "as it was";
    session.data().weightBy("x2");
    EXPECT_FALSE(ofThese());
    session.data().weightBy("");
    session.data().describe(0, "", 4, {{2, "deux"}});
    EXPECT_FALSE(ofThese());

    const std::shared_ptr<const ResultsBook> first = session.sharedBook();
    const std::vector<std::string> notes = first->notes;
    session.data().select("x1 < 4");
    call("Cancel"); // and again, of the data as they are now
    specify(2);
    EXPECT_TRUE(ofThese());
    call("Write");
    ASSERT_NE(session.sharedBook(), first) << "results of other settings stand in a book of their own";
    EXPECT_EQ(first->outputs.size(), 3U);
    EXPECT_EQ(first->notes, notes) << "and say of the data what held for them";
    EXPECT_NE(session.book().notes, notes);
    EXPECT_EQ(session.book().analysis, first->analysis);
    const RunOrigin& second = *origin(0).run;
    ASSERT_EQ(second.dialogs.size(), 1U) << "the specification of the first run is replaced";
    EXPECT_EQ(std::get<std::vector<Setting::Role>>(second.dialogs[0].settings[0].value).at(0).variables,
              std::vector<std::string>{"x2"});
    EXPECT_TRUE(second.remarks.empty()) << "those of the first run are not its own";
    EXPECT_EQ(session.book().notes.size(), 1U) << "nor do they stand in its book";
    EXPECT_NE(origin(*first, 0).run, origin(0).run);
    session.openData(data());
    EXPECT_FALSE(ofThese());
    session.start();
    EXPECT_EQ(session.run(), nullptr);
}

/// One dialog in two forms: a value changes from one to the other. That neither accepts the form nor goes
/// back.
TEST_F(OriginTest, ADialogChangesItsForm) {
    session.start();
    put("Short", true);
    EXPECT_FALSE(session.currentDialog()) << "the form has closed";
    session.pump();
    EXPECT_EQ(session.currentInterface(), "TinyShort");
    EXPECT_EQ(session.run(), nullptr) << "nothing was accepted";
    call("OK"); // refused: there is no variable
    specify(1);
    ASSERT_EQ(session.book().messages.size(), 1U) << "what was said on the way to the form is about its run";
    EXPECT_EQ(lastMessage(), "Another form.");
    call("Write");
    const std::shared_ptr<const ResultsBook> first = session.sharedBook();
    call("Cancel");
    put("Short", false);
    session.pump();
    put("Short", true);
    session.pump();
    put("Short", false);
    session.pump();
    EXPECT_EQ(session.sharedBook(), first);
    specify(1);
    EXPECT_EQ(session.book().messages.size(), 1U) << "only that of the last change";
    call("Write");
    EXPECT_EQ(first->messages.size(), 1U) << "nor is it about the results before";
    const RunOrigin& run = *origin(0).run;
    ASSERT_EQ(run.dialogs.size(), 1U) << "the form that was accepted, instead of the other one";
    EXPECT_EQ(run.dialogs[0].id, "TinySpecify");
    EXPECT_EQ(origin(*first, 0).run->dialogs.at(0).id, "TinyShort");
    call("Cancel");
    specify(1);
    EXPECT_TRUE(session.book().messages.empty()) << "the form was not changed again";
}

/// A notebook changes the working folder as it likes; the data file that was named in the one before is the
/// same file still.
TEST(DataStateTest, KnowsItsFileInWhateverFolderTheProgramWorks) {
    namespace fs = std::filesystem;
    const fs::path before = fs::current_path();
    const fs::path folder = fs::temp_directory_path() / ("korvana-origin-" + std::to_string(getpid()));
    fs::create_directories(folder);
    fs::current_path(folder);
    std::ofstream("data.csv") << "x,y\n1,2\n3,4\n";
    auto run = std::make_shared<RunOrigin>();
    ActiveData active;
    active.open(readData("data.csv"));
    run->data = active.state();
    fs::current_path(before);

    const std::string file = (folder / "data.csv").string();
    EXPECT_EQ(run->data.file, "data.csv") << "as it was named";
    EXPECT_NE(test::refusalOf<std::runtime_error>([&] { refuseDataFile(file, run->data.where()); }), "");
    EXPECT_NE(recordedScript({}, {}, run).find("DATA = \"" + file + "\"  # given as \"data.csv\""),
              std::string::npos);
    active.open(tiny::DataOf({{1, 2}}));
    EXPECT_EQ(active.state().where(), "folder/tiny.csv") << "one that is not there";
    fs::remove_all(folder);
}

TEST(OriginLine, BeginsWithTheDialogThatNamedTheVariables) {
    using Roles = std::vector<Setting::Role>;
    RunOrigin run;
    run.data.file = "folder/x.csv";
    run.data.cases = 3;
    run.dialogs = {
        {"Start", "Start", 1, {{"Type", "Type", 5}}, {}, {}},
        {"Specify", "Specify", 2, {{"Variables", "Variables", Roles{{"A", {"x", "y"}}, {"B", {}}}}}, {}, {}},
        {"Estimate", "Estimate", 3, {{"Most", "Most:", 50}}, {}, {}}};
    EXPECT_EQ(specificationOf(run).id, "Specify");
    EXPECT_EQ(originLine(run), "x.csv | 3 cases | x, y | Most: 50");
    // The same variables in other roles are other lines.
    const auto lineOf = [&run](Roles roles) {
        run.dialogs[1].settings[0].value = std::move(roles);
        return originLine(run);
    };
    EXPECT_EQ(lineOf({{"A", {"t"}}, {"B", {"x", "y"}}, {"C", {}}}), "x.csv | 3 cases | t; x, y | Most: 50");
    EXPECT_EQ(lineOf({{"A", {"t"}}, {"B", {"x"}}, {"C", {"y"}}}), "x.csv | 3 cases | t, x, y | Most: 50");
    run.dialogs.erase(run.dialogs.begin() + 1);
    EXPECT_EQ(specificationOf(run).id, "Estimate");
}

TEST(ControlLabels, AreReadableAsText) {
    EXPECT_EQ(ozm::PlainControlText("!249S&ummary:  Product-limit"), "Summary: Product-limit");
    EXPECT_EQ(ozm::PlainControlText("&Conf. Level:"), "Conf. Level");
    EXPECT_EQ(ozm::PlainControlText("ePercentiles &&&co &"), "Percentiles &co");
    EXPECT_EQ(ozm::PlainControlText(""), "");
}

} // namespace
} // namespace korvana
