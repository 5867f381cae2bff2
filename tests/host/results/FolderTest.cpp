#include <nlohmann/json.hpp>
#include <set>

#include "host/results/ChartDrawing.h"
#include "host/results/ResultsFolder.h"
#include "host/results/WriteBook.h"
#include "tests/host/results/Books.h"
#include "tests/host/results/FilesFixture.h"

namespace korvana {
namespace {

/// A folder holds one run: files listed by an earlier one are removed, those of others are kept.
TEST_F(Files, AFolderHoldsOneRun) {
    const auto names = [this] {
        std::set<std::string> found;
        for (const auto& entry : fs::directory_iterator(directory_))
            found.insert(entry.path().filename().string());
        return found;
    };
    const std::string list(fileList);
    for (const char* formats : {"json,csv,svg", "csv,svg"}) {
        writeFile(directory_ / "mine.csv", "mine");
        writeBook(test::smallBook(), directory_, parseFormats(formats));
        EXPECT_TRUE(names().contains("estimate-bounds-group-1-1.svg")) << formats;
        writeBook(bigBook(3), directory_, parseFormats("csv"));
        EXPECT_EQ(names(), (std::set<std::string>{"mine.csv", "big.csv", list})) << "after " << formats;
        writeBook(bigBook(3), directory_, parseFormats("json,txt"));
        EXPECT_EQ(names(), (std::set<std::string>{"mine.csv", "results.json", "report.txt"}));
        const auto json = nlohmann::json::parse(read(directory_ / "results.json"));
        EXPECT_EQ(json["files"], nlohmann::json({"report.txt", "results.json"}));
    }
    // No file of others is replaced, of any kind and by any format.
    const std::vector<std::pair<const char*, const char*>> clashes{
        {"txt", "report.txt"}, {"html", "report.html"},  {"xlsx", "results.xlsx"},      {"csv", "big.csv"},
        {"py", "script.py"},   {"json", "results.json"}, {"csv", ".korvana-files.json"}};
    for (const auto& [formats, name] : clashes) {
        const fs::path place = directory_ / "theirs" / name;
        fs::create_directories(place.parent_path());
        writeFile(place, "theirs");
        const std::string failure =
            failureOf([&, f = formats] { writeBook(bigBook(3), directory_ / "theirs", parseFormats(f)); });
        EXPECT_NE(failure.find("theirs/" + std::string(name) + "' is there already"), std::string::npos)
            << formats << failure;
        EXPECT_EQ(read(place), "theirs");
        fs::remove(place);
        EXPECT_TRUE(fs::is_empty(directory_ / "theirs")) << formats;
    }
    fs::remove(directory_ / "theirs");
    // The user is asked about everything that is removed, and nothing else is.
    writeFile(directory_ / "report.html", "mine");
    const FolderChanges told = changesIn(directory_, {"report.html", "report.txt", "big.csv"});
    EXPECT_EQ(told.replaced, (std::vector<std::string>{"report.html", "report.txt"}));
    EXPECT_EQ(told.removed, std::vector<std::string>{"results.json"});
    writeBook(bigBook(3), directory_, parseFormats("html,txt,csv"), nullptr, OthersFiles::Replaced);
    EXPECT_EQ(names(), (std::set<std::string>{"mine.csv", "report.html", "report.txt", "big.csv", list}));
    EXPECT_NE(read(directory_ / "report.html"), "mine");
    EXPECT_TRUE(changesIn(directory_, {"results.xlsx"}).replaced.empty())
        << "the list is no business of theirs";
}

/// A list of files cannot be trusted: only plain files beside it, of the kinds that runs write, are removed.
TEST_F(Files, AListOfFilesIsNotTrusted) {
    const fs::path inside = directory_ / "in";
    fs::create_directories(inside / "folder.csv");
    writeFile(directory_ / "out.csv", "out");
    writeFile(inside / "thesis.odt", "thesis");
    writeFile(inside / "old.csv", "old");
    fs::create_symlink(directory_ / "out.csv", inside / "link.csv");
    const nlohmann::json files{
        "../out.csv", (directory_ / "out.csv").string(), "folder.csv", "link.csv", "..",
        "thesis.odt", std::string("old.csv\0x.csv", 13), "",           "old.csv"};
    nlohmann::ordered_json head{{"format", "korvana-results"}, {"files", files}, {"notes", {"ends"}}};
    writeFile(inside / "results.json", head.dump());
    EXPECT_EQ(filesOfRun(inside), (std::vector<std::string>{"old.csv", "results.json"}));
    writeBook(bigBook(1), inside, parseFormats("txt"));
    for (const char* kept : {"folder.csv", "thesis.odt", "link.csv", "../out.csv"})
        EXPECT_TRUE(fs::exists(inside / kept)) << kept;
    EXPECT_FALSE(fs::exists(inside / "old.csv"));
    fs::remove(inside / fileList);

    // Another program's file of that name is not a list.
    for (const char* other :
         {"", "[]", "7", "{\"files\": [\"x.csv\"]}", "{\"format\": \"x\", \"files\": [\"x.csv\"]}",
          "{\"format\": \"korvana-results\", \"files\": \"x.csv\"}", "{\"format\": \"korvana-res"}) {
        writeFile(inside / "x.csv", "x");
        writeFile(inside / "results.json", other);
        EXPECT_TRUE(filesOfRun(inside).empty()) << other;
    }
}

/// A run that fails leaves the folder as it was, and removes one that it made.
TEST_F(Files, ARunThatFailsChangesNothing) {
    writeBook(test::smallBook(), directory_, parseFormats("json,csv"));
    const std::string before = read(directory_ / "results.json");
    const std::size_t count = entries();
    {
        const SmallDisk disk(50000);
        EXPECT_NE(failureOf([&] { writeBook(bigBook(9000), directory_, parseFormats("txt,json,csv")); }), "");
        EXPECT_NE(
            failureOf([&] { writeBook(bigBook(9000), directory_ / "a" / "b", parseFormats("txt,csv")); }),
            "");
    }
    // Nor does one without a file to write: only tables in formats of pictures, and pictures that fail.
    const auto noTable = [] {
        ResultsBook book;
        book.append(Chart{}).info = test::stepChart();
        return book;
    };
    const std::string folder =
        "nothing to write into '" + directory_.string() + "': among the outputs is no ";
    EXPECT_EQ(failureOf([&] { writeBook(bigBook(3), directory_, parseFormats("svg,pdf")); }),
              folder + "chart for svg, pdf");
    EXPECT_EQ(failureOf([&] { writeBook(noTable(), directory_, parseFormats("csv")); }),
              folder + "table for csv");
    EXPECT_EQ(failureOf([&] { writeBook(ResultsBook{}, directory_, parseFormats("csv,png")); }),
              folder + "table or chart for csv, png");
    useChartDrawer([](const ozm::CChartInfo&, PictureFormat, const PictureOptions&) {
        return Picture{{}, "no"};
    });
    std::vector<std::string> problems;
    EXPECT_TRUE(writeBook(noTable(), directory_, parseFormats("svg,png"), &problems).empty());
    EXPECT_EQ(problems.size(), 2U);
    EXPECT_NE(failureOf([&] { writeBook(noTable(), directory_ / "new", parseFormats("svg")); }), "");
    useChartDrawer(nullptr);
    EXPECT_EQ(read(directory_ / "results.json"), before);
    EXPECT_EQ(entries(), count);
}

} // namespace
} // namespace korvana
