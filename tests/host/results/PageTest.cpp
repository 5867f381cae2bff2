#include <QSet>
#include <QXmlStreamReader>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include "host/results/HtmlWriter.h"
#include "host/results/JsonWriter.h"
#include "host/results/TextWriter.h"
#include "host/results/WriteBook.h"
#include "tests/host/results/Books.h"

namespace korvana {
namespace {

struct Page {
    std::map<std::string, int> elements;
    std::vector<std::string> links;
    QSet<QString> ids;
    QString text;
};

/// Reads the page as XML, so that anything left unescaped or unclosed fails.
Page readPage(const ResultsBook& book, const HtmlOptions& options = {}) {
    std::ostringstream out;
    writeHtml(book, out, options);
    Page page;
    QXmlStreamReader reader(QByteArray::fromStdString(out.str()));
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isCharacters()) page.text += reader.text();
        if (!reader.isStartElement()) continue;
        ++page.elements[reader.name().toString().toStdString()];
        for (const QXmlStreamAttribute& attribute : reader.attributes()) {
            const QString name = attribute.qualifiedName().toString();
            EXPECT_FALSE(name.startsWith("on")) << name.toStdString();
            if (name.endsWith("href") || name == "src")
                page.links.push_back(attribute.value().toString().toStdString());
            if (name != "id") continue;
            EXPECT_FALSE(page.ids.contains(attribute.value().toString()))
                << attribute.value().toString().toStdString();
            page.ids.insert(attribute.value().toString());
        }
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString() << " in line "
                                    << reader.lineNumber();
    return page;
}

TEST(HtmlWriter, IsOneWellFormedPage) {
    Page page = readPage(test::smallBook());
    EXPECT_EQ(page.elements["html"], 1);
    EXPECT_EQ(page.elements["section"], 6); // five outputs and the iterations
    EXPECT_EQ(page.elements["svg"], 2);
    EXPECT_EQ(page.elements["tr"], 4);
    EXPECT_EQ(page.elements["script"], 0);
    EXPECT_TRUE(page.text.contains("<&\"'>,"));
    EXPECT_TRUE(page.text.contains("Warning 14152: The last time is censored."));
    EXPECT_TRUE(page.text.contains("0.333333"));
    for (const std::string& link : page.links) { // nothing comes from elsewhere, every link leads somewhere
        ASSERT_EQ(link.substr(0, 1), "#");
        EXPECT_TRUE(page.ids.contains(QString::fromStdString(link.substr(1)))) << link;
    }
}

/// The texts of an analysis may have blanks at their ends: files for programs keep them, people do not see
/// them.
TEST(Titles, LoseTheirBlanksWhereTheyAreShown) {
    ResultsBook padded = test::smallBook();
    const auto pad = [](std::string& text) {
        if (!text.empty()) text = "  " + text + "    ";
    };
    for (ResultMessage& message : padded.messages)
        pad(message.text);
    for (ResultsBook::Output& output : padded.outputs) {
        if (auto* report = std::get_if<Report>(&output)) pad(report->title);
        if (auto* sheet = std::get_if<Spreadsheet>(&output)) pad(sheet->title);
        if (auto* chart = std::get_if<Chart>(&output)) {
            for (std::string* text : {&chart->info.title, &chart->info.xAxis.title, &chart->info.yAxis.title})
                pad(*text);
            for (ozm::ChartSeries& series : chart->info.series)
                pad(series.legend);
        }
    }
    const auto written = [](const auto& write, const ResultsBook& book) {
        std::ostringstream out;
        write(book, out);
        return out.str();
    };
    const auto text = [](const ResultsBook& book, std::ostream& out) { writeText(book, out); };
    const auto page = [](const ResultsBook& book, std::ostream& out) { writeHtml(book, out); };
    EXPECT_EQ(written(text, padded), written(text, test::smallBook()));
    EXPECT_EQ(written(page, padded), written(page, test::smallBook()));
    EXPECT_EQ(fileNames(padded), fileNames(test::smallBook()));
    const auto json = [](const ResultsBook& book, std::ostream& out) { writeJson(book, out); };
    EXPECT_NE(written(json, padded).find("\"  Estimate & bounds <Group 1>    \""), std::string::npos);

    ResultsBook blank = test::smallBook();
    ResultsBook empty = test::smallBook();
    std::get<Spreadsheet>(blank.outputs[1]).title = std::get<Chart>(blank.outputs[2]).info.title = "   ";
    std::get<Spreadsheet>(empty.outputs[1]).title = std::get<Chart>(empty.outputs[2]).info.title = "";
    EXPECT_EQ(written(text, blank), written(text, empty));
    EXPECT_EQ(written(page, blank), written(page, empty));
}

TEST(HtmlWriter, SummaryAndChartsStandFirstAndWhatIsLongIsFolded) {
    ResultsBook book;
    const auto table = [](const std::string& title, std::size_t rows) {
        return Spreadsheet{title, {}, {}, {{"x", "", {}, std::vector<double>(rows, 1.0)}}};
    };
    book.append(table("open", 12));
    book.append(table("short", 6));
    book.append(Report{"summary", {"line"}});
    book.append(table("long", 13));
    book.append(Report{"long report", std::vector<std::string>(1000, "line")});
    book.append(Chart{test::stepChart()}).info.title = "one";
    book.append(Report{"more", {"line"}});
    book.append(Chart{test::stepChart()}).info.title = "two";
    book.append(table("essential", 40)).essential = true;
    std::ostringstream out;
    EXPECT_TRUE(writeHtml(book, out).empty());
    const std::string page = out.str();
    std::size_t last = 0;
    for (const char* title :
         {"summary", "short", "essential", "one", "two", "open", "long", "long report", "more"}) {
        const std::size_t place = page.find("<h2>" + std::string(title) + "</h2>");
        ASSERT_NE(place, std::string::npos) << title;
        EXPECT_GT(place, last) << title;
        last = place;
    }
    EXPECT_NE(page.find("<summary>13 rows</summary>"), std::string::npos);
    EXPECT_NE(page.find("<summary>1,000 lines</summary>"), std::string::npos);
    EXPECT_EQ(readPage(book).elements.at("details"), 2);
}

TEST(HtmlWriter, LongTablesSayWhereTheRestIs) {
    ResultsBook book;
    Spreadsheet repeated{"Repeated", {}, {}, {{"x", "", {}, std::vector<double>(30, 1.0)}}};
    repeated.repeatsReport = true; // not on the page, but among the files
    book.append(repeated);
    book.append(Spreadsheet{"Short", {}, {}, {{"x", "", {}, std::vector<double>(20, 1.0)}}});
    book.append(Spreadsheet{"Long", {}, {}, {{"x", "", {}, std::vector<double>(1234567, 1.0)}}});
    const Page page = readPage(book, {20, {"repeated.csv", "short.csv", "long.csv"}});
    EXPECT_EQ(page.elements.at("td"), 40);
    EXPECT_TRUE(page.text.contains("The first 20 of 1,234,567 rows are shown; all of them are in long.csv."));
    EXPECT_FALSE(page.text.contains("short.csv"));
    EXPECT_TRUE(readPage(book, {20, {}}).text.contains("CSV, JSON or XLSX"));
}

TEST(HtmlWriter, AnEmptyBookIsAPage) {
    EXPECT_EQ(readPage({}).elements.at("main"), 1);
    ResultsBook book;
    book.append(Spreadsheet{});
    EXPECT_TRUE(readPage(book).text.contains("no rows"));
}

} // namespace
} // namespace korvana
