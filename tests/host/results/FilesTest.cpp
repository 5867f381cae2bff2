#include <array>
#include <nlohmann/json.hpp>
#include <random>

#include "host/results/HtmlWriter.h"
#include "host/results/OutputFile.h"
#include "host/results/WriteBook.h"
#include "host/results/WriteOutput.h"
#include "tests/host/results/Books.h"
#include "tests/host/results/FilesFixture.h"

namespace korvana {
namespace {

TEST_F(Files, AreWholeOrNotThere) {
    const fs::path target = directory_ / "file.txt";
    writeFile(target, "old");
    {
        OutputFile abandoned(target);
        abandoned.stream() << std::string(200000, 'x');
    }
    EXPECT_EQ(read(target), "old");
    OutputFile file(target);
    file.stream() << "new " << std::string(70000, 'y') << '!';
    EXPECT_EQ(read(target), "old");
    file.commit();
    EXPECT_EQ(read(target), "new " + std::string(70000, 'y') + "!");
    EXPECT_EQ(entries(), 1U);
}

/// A file is the concatenation of what is written, for pieces of any size: in particular where a piece fills
/// the buffer to the last byte, or is as large as the whole buffer.
TEST_F(Files, HoldWhatWasWrittenInItsOrder) {
    constexpr std::size_t bufferSize = 65536;
    std::mt19937 random(20);
    const auto pick = [&random](std::size_t most) {
        return std::uniform_int_distribution<std::size_t>(0, most)(random);
    };
    std::string source(3 * bufferSize + 100, '\0');
    for (char& c : source)
        c = static_cast<char>('a' + pick(25));
    for (int round = 0; round < 200; ++round) {
        std::string expected;
        OutputFile file(directory_ / "file");
        std::ostream& out = file.stream();
        const std::size_t pieces = 1 + pick(40);
        for (std::size_t piece = 0; piece < pieces; ++piece) {
            const std::size_t room = bufferSize - expected.size() % bufferSize;
            // Exactly what is left, one more or less; likewise of the whole buffer; small; any.
            const std::size_t size = std::array{room - 1 + pick(2), bufferSize - 1 + pick(2), pick(1),
                                                pick(100), pick(3 * bufferSize)}[pick(4)];
            std::string text = source.substr(pick(99), size);
            expected += text;
            if (pick(3) == 0) {
                for (const char c : text.substr(0, 200))
                    out.put(c);
                text.erase(0, 200);
            }
            out.write(text.data(), static_cast<std::streamsize>(text.size()));
            if (pick(9) == 0) out.flush();
        }
        file.commit();
        ASSERT_EQ(read(directory_ / "file"), expected) << "round " << round;
    }
}

TEST_F(Files, FailuresNameTheFileAndTheReason) {
    const std::string missing = failureOf([&] { writeFile(directory_ / "no" / "file.txt", "x"); });
    EXPECT_NE(missing.find("no/file.txt"), std::string::npos) << missing;
    EXPECT_NE(missing.find("No such file"), std::string::npos) << missing;

    fs::create_directory(directory_ / "results.json");
    EXPECT_NE(failureOf([&] { writeFile(directory_ / "results.json", "x"); }).find("directory"),
              std::string::npos);

    writeFile(directory_ / "taken", "x");
    const FormatSet formats = parseFormats("txt");
    const std::string inTheWay = failureOf([&] { writeBook({}, directory_ / "taken", formats); });
    EXPECT_NE(inTheWay.find("taken"), std::string::npos) << inTheWay;
    const std::string below = failureOf([&] { writeBook({}, directory_ / "taken" / "deeper", formats); });
    EXPECT_NE(below.find("deeper"), std::string::npos) << below;
}

TEST_F(Files, AFullDiskLeavesNoHalfFile) {
    const ResultsBook book = bigBook(100000);
    for (const char* format : {"txt", "json", "csv", "html", "xlsx"}) {
        std::string message;
        {
            const SmallDisk disk(50000);
            message = failureOf([&] { writeBook(book, directory_, parseFormats(format)); });
        }
        EXPECT_NE(message.find("cannot write '" + directory_.string()), std::string::npos)
            << format << ": " << message;
        EXPECT_EQ(entries(), 0U) << format;
    }
}

TEST_F(Files, NeedRoomForTheirLastByteToo) {
    const ResultsBook book = bigBook(20000);
    for (const auto format : {OutputFormat::Csv, OutputFormat::Txt, OutputFormat::Json, OutputFormat::Html}) {
        const fs::path target = directory_ / endingOf(format);
        const auto write = [&] { writeOutput(book, 0, nullptr, format, target); };
        write();
        const std::string whole = read(target);
        {
            const SmallDisk disk(whole.size());
            write();
        }
        EXPECT_EQ(read(target), whole);
        writeFile(target, "old");
        const SmallDisk disk(whole.size() - 1);
        EXPECT_NE(failureOf(write), "") << target;
        EXPECT_EQ(read(target), "old");
    }
}

/// The numbers of a text that follow `before`, in order.
std::vector<int> numbersAfter(const std::string& text, const std::string& before) {
    std::vector<int> numbers;
    for (std::size_t at = text.find(before); at != std::string::npos; at = text.find(before, at + 1))
        numbers.push_back(std::atoi(text.c_str() + at + before.size()));
    return numbers;
}

/// Tables of sizes around those that fill the writers' buffers, read back: each format has all rows once, in
/// order.
TEST_F(Files, TablesOfAnySizeKeepTheirRowsInOrder) {
    const FormatSet formats = parseFormats("json,csv,txt,html");
    for (std::size_t size = 1; size < 60000; size += 1 + size * 2 / 3) {
        ResultsBook book = bigBook(size);
        const auto& columns = book.lastSpreadsheet()->columns;
        const auto& n = std::get<std::vector<std::int32_t>>(columns[0].cells);
        const auto& x = std::get<std::vector<double>>(columns[1].cells);
        writeBook(book, directory_, formats);

        const auto json = nlohmann::json::parse(read(directory_ / "results.json"));
        const auto& rows = json["spreadsheets"][0]["rows"];
        ASSERT_EQ(rows.size(), size);
        std::istringstream csv(read(directory_ / "big.csv"));
        std::string line;
        std::getline(csv, line);
        EXPECT_EQ(line, "n,x\r");
        for (std::size_t i = 0; i < size; ++i) {
            ASSERT_EQ(rows[i]["cells"], nlohmann::json({n[i], x[i]})) << "row " << i << " of " << size;
            ASSERT_TRUE(std::getline(csv, line)) << "row " << i << " of " << size;
            std::size_t digits = 0;
            ASSERT_EQ(std::stoi(line, &digits), n[i]) << line;
            ASSERT_EQ(std::stod(line.substr(digits + 1)), x[i]) << line;
        }
        EXPECT_FALSE(std::getline(csv, line));

        // For people: the rows that a report shows, in their order, between head and end.
        const std::string text = read(directory_ / "report.txt");
        const std::string html = read(directory_ / "report.html");
        EXPECT_TRUE(html.starts_with("<!DOCTYPE html>"));
        EXPECT_TRUE(html.ends_with("</html>\n"));
        const std::vector<int> shown = numbersAfter(html, "<tr><td>");
        EXPECT_EQ(shown, std::vector<int>(n.begin(), n.begin() + static_cast<std::ptrdiff_t>(shown.size())));
        EXPECT_EQ(shown.size(), std::min(size, HtmlOptions{}.mostRows));
        std::vector<int> inText;
        for (std::istringstream lines(text.substr(text.rfind("--\n") + 3)); std::getline(lines, line);)
            if (!line.empty()) inText.push_back(std::stoi(line));
        EXPECT_EQ(inText, std::vector<int>(n.begin(), n.end())) << size;
    }
}

TEST_F(Files, ABookBecomesItsFiles) {
    const auto files = writeBook(test::smallBook(), directory_ / "a" / "b", FormatSet::all());
    std::vector<std::string> names;
    for (const fs::path& file : files) {
        names.push_back(file.filename().string());
        EXPECT_GT(fs::file_size(file), 100U) << file;
    }
    EXPECT_EQ(names, (std::vector<std::string>{
                         "report.txt", "results.json", "survival-function.csv", "results.xlsx", "script.py",
                         "report.html", "estimate-bounds-group-1-1.svg", "estimate-bounds-group-1-1.png",
                         "estimate-bounds-group-1-1.pdf", "estimate-bounds-group-1-2.svg",
                         "estimate-bounds-group-1-2.png", "estimate-bounds-group-1-2.pdf"}));
    EXPECT_EQ(read(files[8]).substr(0, 5), "%PDF-");
    EXPECT_EQ(std::distance(fs::directory_iterator(directory_ / "a" / "b"), {}), 12);
}

TEST(FileNames, AreNumberedOnlyWhereTheyCollide) {
    ResultsBook book;
    for (const char* title : {"A", "a!", "a 1", "", "../etc/passwd", "\xC3\xA4\xFF"})
        book.append(Spreadsheet{}).title = title;
    book.append(Report{"A", {}});
    book.append(Chart{}).info.title = "A";
    book.append(Spreadsheet{}).title = std::string(500, 'z');
    const std::vector<std::string> expected{"a-2",     "a-3", "a-1", "table-1",           "etc-passwd",
                                            "table-2", "",    "a",   std::string(60, 'z')};
    EXPECT_EQ(fileNames(book), expected);
}

TEST(FileNames, OfLongTitlesKeepWholeWordsAndWhatFollowsTheComma) {
    ResultsBook book;
    const std::string words = "Predicted Survival Times at Given Values of the Covariates";
    for (const std::string& title :
         {words + ", lognormal", words + ", normal", words + " and of the Strata", words + ", " + words})
        book.append(Spreadsheet{}).title = title;
    const std::string stem = "predicted-survival-times-at-given-values-of-the";
    const std::vector<std::string> expected{stem + "-lognormal", stem + "-normal", stem + "-covariates-1",
                                            stem + "-covariates-2"};
    EXPECT_EQ(fileNames(book), expected);
}

TEST(Formats, AreParsedFromAList) {
    EXPECT_EQ(parseFormats(" JSON, txt,json"), FormatSet().add(OutputFormat::Json).add(OutputFormat::Txt));
    EXPECT_EQ(parseFormats(knownFormats()), FormatSet::all());
    for (const char* wrong : {"docx", "", "txt,,json", "json;txt"}) {
        const std::string refusal =
            test::refusalOf<std::invalid_argument>([&] { (void)parseFormats(wrong); });
        EXPECT_NE(refusal.find("json, txt, csv, html, xlsx, svg, png, pdf, py"), std::string::npos) << wrong;
    }
}

} // namespace
} // namespace korvana
