#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "host/results/JoinedRuns.h"
#include "host/results/SheetNames.h"
#include "host/results/WriteBook.h"
#include "tests/host/results/Books.h"

namespace korvana {
namespace {

Spreadsheet titled(const char* title) {
    Spreadsheet sheet;
    sheet.title = title;
    return sheet;
}

/// A book as a run leaves it: two outputs of one press, and a chart.
ResultsBook bookOfRun(const std::string& note) {
    auto run = std::make_shared<RunOrigin>();
    const auto origin = [&](const char* id) {
        auto made = std::make_shared<OutputOrigin>();
        made->id = id;
        made->run = run;
        return made;
    };
    ResultsBook book;
    book.source = "x.csv";
    book.notes = {"2 cases left out.", note};
    book.messages = {{21119, "Too many iterations.", "detail", ResultMessage::Severity::Warning}};
    book.iterations = {"1 -5"};
    const auto summary = origin("Summary");
    book.append(titled("Fit of the Model")).origin = summary;
    book.append(titled("Parameter Estimates")).origin = summary;
    book.append(Chart{test::stepChart(), origin("Plot1")});
    return book;
}

TEST(JoinedRuns, TellTheirOutputsApartAndSayWhatIsWhose) {
    ResultsBook failed;
    failed.status = 1;
    failed.messages = {{21129, "No likelihood.", "", ResultMessage::Severity::Error}};
    ResultsBook ofAll;
    ofAll.append(titled("Comparison"));
    const ResultsBook book = joinedRuns({{"exponential", bookOfRun("Its own.")},
                                         {"lognormal", failed},
                                         {"normal", bookOfRun("Another.")},
                                         {"", ofAll}});
    EXPECT_EQ(book.status, 1);
    EXPECT_EQ(book.source, "x.csv");
    EXPECT_EQ(book.notes,
              (std::vector<std::string>{"2 cases left out.", "exponential: Its own.", "normal: Another."}));
    ASSERT_EQ(book.messages.size(), 3U);
    EXPECT_EQ(book.messages[1].text, "lognormal: No likelihood.");
    EXPECT_EQ(book.messages[1].id, 21129);
    EXPECT_EQ(book.iterations, (std::vector<std::string>{"exponential", "1 -5", "normal", "1 -5"}));

    const auto sheets = book.all<Spreadsheet>();
    ASSERT_EQ(sheets.size(), 5U);
    EXPECT_EQ(sheets[0]->title, "Fit of the Model, exponential");
    EXPECT_EQ(sheets[4]->title, "Comparison");
    EXPECT_EQ(sheets[0]->origin->run, sheets[1]->origin->run) << "one run";
    EXPECT_NE(sheets[0]->origin->run, sheets[2]->origin->run);
    EXPECT_EQ(sheets[2]->origin->run->name, "normal");
    const std::vector<std::string> ids{"exponential/Summary",
                                       "exponential/Summary-2",
                                       "exponential/Plot1",
                                       "normal/Summary",
                                       "normal/Summary-2",
                                       "normal/Plot1",
                                       ""};
    EXPECT_EQ(outputIds(book), ids);

    // No two share a name anywhere, and every name says whose output it is.
    SheetNames workbook;
    std::set<std::string> names;
    for (const std::string& name : fileNames(book))
        names.insert(name);
    EXPECT_EQ(names.size(), 7U);
    EXPECT_TRUE(names.contains("parameter-estimates-normal"));
    EXPECT_TRUE(workbook.take(sheets[1]->title).ends_with(", exponential"));
}

TEST(JoinedRuns, ATitleThatBeginsWithTheNameNeedsItNoMoreUnlessOthersHaveIt) {
    const auto with = [](const char* title) {
        ResultsBook book;
        book.append(Report{title, {}});
        book.append(titled("Normal Scores"));
        return book;
    };
    const ResultsBook book =
        joinedRuns({{"lognormal", with("Lognormal Results")}, {"normal", with("Normal Results")}});
    EXPECT_EQ(book.all<Report>()[1]->title, "Normal Results");
    EXPECT_EQ(book.all<Spreadsheet>()[1]->title, "Normal Scores, normal");
}

TEST(JoinedRuns, OneWithoutANameIsAsItWas) {
    std::ostringstream before;
    std::ostringstream after;
    const auto write = [](const ResultsBook& book, std::ostream& out) {
        for (const std::string& name : fileNames(book))
            out << name << '\n';
        for (const std::string& id : outputIds(book))
            out << id << '\n';
        out << book.messages.front().text << book.notes.front() << book.iterations.front();
    };
    write(test::smallBook(), before);
    write(joinedRuns({{"", test::smallBook()}}), after);
    EXPECT_EQ(before.str(), after.str());
}

} // namespace
} // namespace korvana
