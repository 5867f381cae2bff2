#include <array>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <sys/resource.h>
#include <unistd.h>

#include "host/results/OutputFile.h"
#include "host/results/WriteBook.h"
#include "host/results/XlsxWriter.h"
#include "tests/host/results/Books.h"
#include "tests/support/Refusal.h"

namespace korvana {
namespace {

namespace fs = std::filesystem;

class Files : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "korvana-results-XXXXXX").string();
        ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
        directory_ = pattern;
    }
    void TearDown() override { fs::remove_all(directory_); }

    static std::string read(const fs::path& path) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }

    [[nodiscard]] std::size_t entries() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(directory_), {}));
    }

    template <class Act>
    static std::string failureOf(Act act) {
        return test::refusalOf<std::runtime_error>(act);
    }

    fs::path directory_;
};

/// No file may grow beyond a size, as on a full disk.
class SmallDisk {
public:
    explicit SmallDisk(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

private:
    void (*signal_)(int);
    rlimit before_{};
};

ResultsBook bigBook(std::size_t rows) {
    ResultsBook book;
    Spreadsheet sheet;
    sheet.title = "Big";
    std::vector<double> x(rows);
    std::vector<std::int32_t> n(rows);
    for (std::size_t i = 0; i < rows; ++i) {
        x[i] = 1.0 / (static_cast<double>(i) + 3.0);
        n[i] = static_cast<std::int32_t>(i);
    }
    sheet.columns.push_back({"x", "", {}, std::move(x)});
    sheet.columns.push_back({"n", "", {}, std::move(n)});
    book.append(std::move(sheet));
    return book;
}

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

TEST_F(Files, ABigTableIsWrittenWhole) {
    constexpr std::size_t kRows = 100000;
    const auto files = writeBook(bigBook(kRows), directory_, parseFormats("json,csv,txt"));
    ASSERT_EQ(files.size(), 3U);
    const auto json = nlohmann::json::parse(read(directory_ / "results.json"));
    const auto& rows = json["spreadsheets"][0]["rows"];
    ASSERT_EQ(rows.size(), kRows);
    EXPECT_EQ(rows[kRows - 1]["cells"], nlohmann::json({1.0 / (kRows + 2.0), kRows - 1}));
    const std::string csv = read(directory_ / "big.csv");
    EXPECT_EQ(std::count(csv.begin(), csv.end(), '\n'), static_cast<std::ptrdiff_t>(kRows) + 1);
    const std::string text = read(directory_ / "report.txt");
    EXPECT_NE(text.find("99999\n"), std::string::npos);
}

TEST_F(Files, ABookBecomesItsFiles) {
    const auto files = writeBook(test::smallBook(), directory_ / "a" / "b", FormatSet::all());
    std::vector<std::string> names;
    for (const fs::path& file : files) {
        names.push_back(file.filename().string());
        EXPECT_GT(fs::file_size(file), 100U) << file;
    }
    EXPECT_EQ(names, (std::vector<std::string>{
                         "report.txt", "results.json", "survival-function.csv", "report.html", "results.xlsx",
                         "estimate-bounds-group-1-1.svg", "estimate-bounds-group-1-1.png",
                         "estimate-bounds-group-1-1.pdf", "estimate-bounds-group-1-2.svg",
                         "estimate-bounds-group-1-2.png", "estimate-bounds-group-1-2.pdf"}));
    EXPECT_EQ(read(files[7]).substr(0, 5), "%PDF-");
    EXPECT_EQ(std::distance(fs::directory_iterator(directory_ / "a" / "b"), {}), 11);
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

TEST(Formats, AreParsedFromAList) {
    EXPECT_EQ(parseFormats(" JSON, txt,json"), FormatSet().add(OutputFormat::Json).add(OutputFormat::Txt));
    EXPECT_EQ(parseFormats(knownFormats()), FormatSet::all());
    for (const char* wrong : {"docx", "", "txt,,json", "json;txt"}) {
        const std::string refusal =
            test::refusalOf<std::invalid_argument>([&] { (void)parseFormats(wrong); });
        EXPECT_NE(refusal.find("json, txt, csv, html, xlsx, svg, png, pdf"), std::string::npos) << wrong;
    }
}

/// A part of a workbook, unpacked by Python's standard library.
std::string partOf(const fs::path& workbook, const std::string& part) {
    const std::string command =
        "python3 -c \"import sys,zipfile;z=zipfile.ZipFile(sys.argv[1]);assert z.testzip() is None;"
        "sys.stdout.write(z.read(sys.argv[2]).decode())\" '" +
        workbook.string() + "' '" + part + "'";
    std::string text;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr) return {};
    std::array<char, 4096> buffer{};
    for (std::size_t size = 0; (size = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        text.append(buffer.data(), size);
    return ::pclose(pipe) == 0 ? text : std::string();
}

TEST_F(Files, WorkbookHoldsNumbersAndLegalSheetNames) {
    if (std::system("python3 -c 'import zipfile'") != 0)
        GTEST_SKIP() << "needs python3 to unpack the workbook";
    ResultsBook book = test::smallBook();
    book.append(test::smallSheet()).title = "SURVIVAL FUNCTION";
    book.append(test::smallSheet()).title = "A/B: 'of' [all] the *tables* with a very long title";
    book.append(test::smallSheet()).title = "One & Two's Test of Everything, Scores";
    book.append(test::smallSheet()).title = "One & Two's Test of Everything, Statistics";
    book.append(Spreadsheet{});
    const fs::path target = directory_ / "results.xlsx";
    writeXlsx(book, target);
    const std::string sheets = partOf(target, "xl/workbook.xml");
    for (const char* name :
         {"\"Report\"", "\"Survival function\"", "\"SURVIVAL FUNCTION 2\"",
          "\"A B 'of' all the tables with a\u2026\"", "\"One &amp; Two's Test of\u2026, Scores\"",
          "\"One &amp; Two's Test\u2026, Statistics\"", "\"Table\""})
        EXPECT_NE(sheets.find(name), std::string::npos) << name << " in " << sheets;
    const std::string cells = partOf(target, "xl/worksheets/sheet2.xml");
    EXPECT_NE(cells.find("<v>0.3333333333333333"), std::string::npos) << cells;
    EXPECT_NE(cells.find("<v>10.5</v>"), std::string::npos);
    EXPECT_NE(cells.find(">censored<"), std::string::npos);
    EXPECT_NE(partOf(target, "xl/styles.xml").find("formatCode=\"0.000\""), std::string::npos);
    EXPECT_NE(partOf(target, "xl/worksheets/sheet1.xml").find("Cases 60"), std::string::npos);
}

} // namespace
} // namespace korvana
