#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

#include "host/results/JoinedRuns.h"
#include "host/results/OutputFile.h"
#include "host/results/PythonText.h"
#include "host/results/RecordedScript.h"
#include "tests/host/results/Books.h"
#include "tests/host/results/FilesFixture.h"

namespace korvana {
namespace {

TEST(PythonText, ReadsBackAsItWas) {
    const std::pair<std::string, const char*> texts[] = {
        {"", R"("")"},
        {"it's", R"("it's")"},
        {"say \"no\"", R"('say "no"')"},
        {"it's \"no\"", R"("it's \"no\"")"},
        {R"(a\n)", R"("a\\n")"},
        {std::string("a\n\r\t\0\x7f", 6), R"("a\n\r\t\x00\x7f")"},
        {"\xC3\xA4 \xF0\x9D\x84\x9E", "\"\xC3\xA4 \xF0\x9D\x84\x9E\""},
        {"\xC2\x85\xE2\x80\xAE\xEF\xBB\xBF\xF3\xA0\x80\x81", R"("\x85\u202e\ufeff\U000e0001")"},
        {"caf\xE9 \xED\xA0\x80", R"("caf\udce9 \udced\udca0\udc80")"},
        {"\xEF\xBF\xBD", "\"\xEF\xBF\xBD\""},
    };
    for (const auto& [text, literal] : texts)
        EXPECT_EQ(pythonText(text), literal);

    const std::pair<double, const char*> numbers[] = {
        {0.1, "0.1"},
        {1.0 / 3.0, "0.3333333333333333"},
        {-7, "-7"},
        {-0.0, "-0.0"},
        {2147483647, "2147483647"},
        {2147483648, "2147483648.0"},
        {-123456789012, "-123456789012.0"},
        {1e300, "1e+300"},
        {5e-324, "5e-324"},
        {test::notANumber, "float(\"nan\")"},
        {-test::infinite, "float(\"-inf\")"},
    };
    for (const auto& [number, literal] : numbers)
        EXPECT_EQ(pythonNumber(number), literal);

    const std::vector<std::string> many(30, "1234567");
    const std::string list = pythonList("x = ", many);
    EXPECT_EQ(list.substr(0, 16), "x = [\n    123456");
    std::istringstream lines(list);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 100U) << line;
}

struct RecordedScript : Files {
    std::shared_ptr<RunOrigin> run = std::make_shared<RunOrigin>();

    void SetUp() override {
        Files::SetUp();
        writeFile(directory_ / "data.csv", "t,s\n1,1\n");
        run->analysis = "Survival";
        run->data.file = (directory_ / "data.csv").string();
        addDialog("Start", "Start", {{"Kind", "", Setting::Choice{"scTwo", "Two"}}});
        addDialog("Specify", "Specification", {});
    }
    void addDialog(const char* id, const char* title, std::vector<Setting> asked, bool modal = false) const {
        DialogSettings dialog;
        dialog.id = id;
        dialog.title = title;
        dialog.asked = std::move(asked);
        dialog.onTheWay = modal;
        run->dialogs.push_back(std::move(dialog));
    }
    std::shared_ptr<OutputOrigin> press(const char* id, std::vector<Setting> settings = {}) const {
        auto origin = std::make_shared<OutputOrigin>();
        origin->id = id;
        origin->run = run;
        origin->settings = std::move(settings);
        return origin;
    }
    static ResultsBook bookOf(const std::vector<std::shared_ptr<OutputOrigin>>& origins) {
        ResultsBook book;
        for (const auto& origin : origins)
            book.append(Report{"R", {}, origin});
        return book;
    }
    /// What stands between two lines.
    static std::string between(const std::string& text, const std::string& first, const std::string& end) {
        const std::size_t from = text.find(first);
        const std::size_t to = text.find(end, from);
        EXPECT_TRUE(from != std::string::npos && to != std::string::npos) << first << end << "\n" << text;
        return from == std::string::npos ? text : text.substr(from, to - from);
    }
};

TEST_F(RecordedScript, OpensTheDataAsTheyWereUsed) {
    run->reading = {HeaderLine::No, '\t', ',', DateOrder::MonthDayYear};
    run->missingAtFirst = {{"a", 99}, {"sum", -0.5}};
    run->definitions = {{"sum", "a + `b c`"}, {"last \"x\"", "sum = 'it''s'"}};
    run->descriptions = {
        {.variable = "s", .after = 1, .missingCode = 7.0, .labels = {{{1.0, "dead"}, {2.5, "\\"}}}},
        {.variable = "a", .after = 0, .label = "A", .missingCode = test::notANumber}};
    run->data.condition = "t > 1";
    run->weightGiven = "w"; // which the analysis turned off: the script gets its message again
    const std::string text = recordedScript(bookOf({press("Summary")}));
    EXPECT_TRUE(text.starts_with(scriptMark));
    EXPECT_EQ(between(text, "DATA =", "\nrun ="), "DATA = " + pythonText(run->data.file) + R"(

app = kv.Application()
app.open(DATA, separator="tab", decimal=",", dates="mdy", header=False)
app.missing("a", 99)
app.missing("a")
app.describe("a", label="A")
app.define("sum", "a + `b c`")
app.missing("sum", -0.5)
app.missing("s", 7)
app.describe("s", labels={1: "dead", 2.5: "\\"})
app.define('last "x"', "sum = 'it''s'")
app.select("t > 1")
app.weight("w")
)");

    // What cannot be opened again is asked for.
    for (const char* file : {"", "standard input", "/dev/null", "gone.csv"}) {
        run->data.file = file;
        const std::string asking = recordedScript(bookOf({press("Summary")}));
        EXPECT_NE(asking.find("\nDATA = None\nif DATA is None:\n    sys.exit("), std::string::npos) << file;
    }
}

TEST_F(RecordedScript, SetsTheDialogsAsTheyWereWhenTheirButtonsWerePressed) {
    using Code = Setting::Code;
    run->dialogs[1].settings = {{"Most", "", 80}};
    run->dialogs[1].asked = {
        {"Variables", "", std::vector<Setting::Role>{{"Times", {"t", "u\"v"}}, {"Strata", {}}}},
        {"Complete", "", Code{1, "dead\nimport os"}},
        {"Unset", "", Code{test::notANumber, ""}},
        {"Codes", "", std::vector<Code>{{1, "1"}, {2.5, "B"}}},
        {"ByStep", "", false, true},
        {"ByNumber", "", true, true},
        {"Correct", "", false},
        {"Step", "", 0.1},
        {"Names", "", std::vector<std::string>{"x\\y"}},
    };
    run->dialogs[1].answers = {true, true};
    addDialog("Modal", "Estimation",
              {{"Most", "", 50}, {"Start", "", std::vector<double>{0.5, test::notANumber}}}, true);
    const std::string text = recordedScript({}, {}, run);
    EXPECT_EQ(between(text, "run =", "\nresults ="), R"(run = app.analysis("Survival")

# Start
run.dialog.Kind = kv.scTwo
run.dialog.OK()

# Specification
run.dialog.Variables = [["t", 'u"v'], []]
run.dialog.Complete = 1  # "dead\nimport os"
run.dialog.Codes = [1, 2.5]  # "B"
run.dialog.ByNumber = True
run.dialog.Correct = False
run.dialog.Step = 0.1
run.dialog.Names = ["x\\y"]
run.modal = {
    # Estimation
    "Most": 50,
    "Start": [0.5, None],
}
run.answer = True
run.dialog.OK()
)");
}

TEST_F(RecordedScript, PressesEachButtonOnceWithTheSettingsThatChanged) {
    const auto both = press("Summary", {{"Level", "", 0.9}, {"At", "", test::notANumber}});
    const auto plot = press("Plot", {{"Level", "", 0.9}, {"At", "", test::notANumber}});
    const auto again = press("Plot", {{"Level", "", 0.5}, {"At", "", test::notANumber}});
    plot->answers = {true};
    again->answers = {false, true};
    const ResultsBook book = bookOf({both, both, press("OK"), plot, again});
    EXPECT_EQ(between(recordedScript(book), "# Results", "\nresults ="), R"(# Results
run.dialog.Level = 0.9
run.dialog.Summary()
run.answer = True
run.dialog.Plot()
run.dialog.Level = 0.5
answers = [False, True]
run.answer = lambda question: answers.pop(0)
run.dialog.Plot()
)");
    // Outputs that were removed are not made again; a press of which one is left is.
    const std::string without = recordedScript(book, {0, 3});
    EXPECT_NE(without.find("Summary()"), std::string::npos);
    EXPECT_EQ(between(without, "run.dialog.Summary()", "\nresults =").find("0.9"), std::string::npos);
}

TEST_F(RecordedScript, MakesEachOfSeveralRunsAndJoinsThem) {
    const auto once = press("Summary");
    const ResultsBook one = bookOf({once, once});
    const std::string text =
        recordedScript(joinedRuns({{"first", one}, {"second", one}, {"", bookOf({once})}}));
    const auto count = [&text](std::string_view what) {
        int found = 0;
        for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(count("run = app.analysis"), 3);
    EXPECT_EQ(count("run.dialog.Summary()"), 3) << "a press made two outputs";
    EXPECT_EQ(count("books.append((\"second\", run.results))\nrun.close()\n"), 1);
    EXPECT_EQ(count("results = kv.joined_results(books)"), 1);
}

TEST_F(RecordedScript, SaysWhenNothingIsKnown) {
    const std::string text = recordedScript(test::smallBook());
    EXPECT_NE(text.find("sys.exit("), std::string::npos);
    EXPECT_EQ(text.find("import korvana"), std::string::npos);
}

} // namespace
} // namespace korvana
