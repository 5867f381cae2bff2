// What stands where results are written: the data, links, files with an owner and permissions.

#include <cstdlib>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "host/results/OutputFile.h"
#include "host/results/RecordedScript.h"
#include "host/results/SaveOutputs.h"
#include "host/results/WriteOutput.h"
#include "tests/host/results/Books.h"
#include "tests/host/results/FilesFixture.h"

namespace korvana {
namespace {

constexpr int allFormats = static_cast<int>(outputFormatCount);
const std::string otherName = "it is the data file; choose another name or folder";

/// A report, a table and a chart from a data file.
ResultsBook bookFrom(const std::string& dataFile) {
    auto run = std::make_shared<RunOrigin>();
    run->data.file = dataFile;
    auto origin = std::make_shared<OutputOrigin>();
    origin->run = run;
    ResultsBook book = bigBook(3);
    book.append(Report{"Report", {"line"}});
    book.append(Chart{}).info = test::stepChart();
    for (ResultsBook::Output& output : book.outputs)
        std::visit([&](auto& one) { one.origin = origin; }, output);
    return book;
}

struct Replacing : Files {
    void SetUp() override {
        Files::SetUp();
        before_ = fs::current_path();
        fs::current_path(directory_);
    }
    void TearDown() override {
        fs::current_path(before_);
        Files::TearDown();
    }
    static int modeOf(const fs::path& file) { return static_cast<int>(fs::status(file).permissions()); }

    fs::path before_;
};

TEST_F(Replacing, NoFormatByNoWayTakesThePlaceOfTheData) {
    writeFile("data.txt", "the data");
    fs::create_symlink("data.txt", "link");
    fs::create_hard_link("data.txt", "hard");
    fs::create_directory("folder");
    const std::size_t files = entries();
    const auto refuses = [&](const auto& write) {
        EXPECT_NE(failureOf(write).find(otherName), std::string::npos) << failureOf(write);
        EXPECT_EQ(read("data.txt"), "the data");
        EXPECT_EQ(entries(), files);
    };
    for (const fs::path& named : {fs::path("data.txt"), directory_ / "data.txt", fs::path("folder/../link")})
        for (const char* target : {"data.txt", "./data.txt", "link", "hard"}) {
            const ResultsBook book = bookFrom(named.string());
            for (int format = 0; format < allFormats; ++format) {
                if (formatsOf(book.outputs[2]).front() == static_cast<OutputFormat>(format)) continue;
                refuses([&] { writeOneFile(book, static_cast<OutputFormat>(format), target); });
            }
            for (std::size_t place = 0; place < book.outputs.size(); ++place)
                for (const OutputFormat format : formatsOf(book.outputs[place]))
                    refuses([&] { writeOutput(book, place, nullptr, format, target); });
        }
    const ResultsBook book = bookFrom("data.txt");
    for (const char* suffix : {".json", ".txt", ".html", ".xlsx", ".csv", ".svg", ".png", ".pdf", ".py"}) {
        const std::string target = std::string("run") + suffix;
        fs::rename("link", target);
        refuses([&] { saveOutputs(book, target); });
        refuses([&] { checkScriptFile(target, "data.txt"); });
        fs::rename(target, "link");
    }
}

/// Not even where it is a file of an earlier run, which the next run would replace, or remove.
TEST_F(Replacing, NoRunTakesItsDataFromAFolder) {
    writeBook(bigBook(3), "run", parseFormats("csv,json"));
    const std::string table = read("run/big.csv");
    const std::string list = read("run/results.json");
    const ResultsBook book = bookFrom("run/big.csv");
    for (const char* formats : {"csv", "txt", "csv,txt,json,html,xlsx,svg"})
        for (const OthersFiles others : {OthersFiles::Kept, OthersFiles::Replaced}) {
            const auto write = [&] { writeBook(book, "run", parseFormats(formats), nullptr, others); };
            EXPECT_EQ(failureOf(write), "cannot write 'run/big.csv': " + otherName) << formats;
            EXPECT_EQ(read("run/big.csv"), table);
            EXPECT_EQ(read("run/results.json"), list);
            EXPECT_EQ(std::distance(fs::directory_iterator("run"), {}), 2) << formats;
        }
    EXPECT_FALSE(writeBook(book, "other", parseFormats("csv")).empty());
}

TEST_F(Replacing, LinksOwnersAndPermissionsStay) {
    fs::create_directory("sub");
    fs::create_symlink("sub/real", "one");
    fs::create_symlink("one", "two");
    const ResultsBook book = bigBook(3);
    const mode_t mask = ::umask(027);
    writeFile("two", "new");
    EXPECT_EQ(read("sub/real"), "new") << "a link to what is not there yet";
    EXPECT_EQ(modeOf("sub/real"), 0640) << "of a new file the umask decides";
    ::umask(0);
    for (const int mode : {0600, 0640, 0664, 0755})
        for (int format = 0; format < allFormats; ++format) {
            const auto wanted = static_cast<OutputFormat>(format);
            if (wanted == OutputFormat::Svg || wanted == OutputFormat::Png || wanted == OutputFormat::Pdf ||
                wanted == OutputFormat::Py)
                continue; // none for a table
            writeFile("sub/real", "old");
            fs::permissions("sub/real", static_cast<fs::perms>(mode));
            ASSERT_TRUE(::geteuid() != 0 || ::chown("sub/real", 65534, 65533) == 0);
            {
                const PendingFile pending("two");
                EXPECT_EQ(modeOf(pending.path()) & 077, 0) << "others cannot read it in the meantime either";
            }
            writeOutput(book, 0, nullptr, wanted, "two");
            EXPECT_NE(read("sub/real"), "old");
            EXPECT_EQ(modeOf("sub/real"), mode) << endingOf(wanted);
            struct stat now {};
            ASSERT_EQ(::stat("sub/real", &now), 0);
            EXPECT_TRUE(::geteuid() != 0 || (now.st_uid == 65534 && now.st_gid == 65533));
            EXPECT_TRUE(fs::is_symlink("one") && fs::is_symlink("two"));
        }
    ::umask(mask);
    EXPECT_EQ(std::distance(fs::directory_iterator("sub"), {}), 1) << "nothing is left beside it";
    EXPECT_EQ(entries(), 3U);
}

TEST_F(Replacing, WhatCannotBeReplacedIsRefusedWithTheReason) {
    fs::create_symlink("round", "round");
    EXPECT_NE(failureOf([] { writeFile("round", "x"); }).find("cannot write 'round': "), std::string::npos);
    ASSERT_EQ(::mkfifo("pipe", 0600), 0);
    for (const char* name : {"pipe", "/dev/null"})
        EXPECT_NE(failureOf([&] { writeFile(name, "x"); }).find("it is a pipe or a device"),
                  std::string::npos);
    EXPECT_FALSE(fs::is_regular_file("pipe"));

    writeFile("mine", "mine");
    fs::permissions("mine", fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(directory_, fs::perms::all);
    const auto asNobody = [] { // nothing is read-only for root
        if (::geteuid() == 0 && ::seteuid(65534) != 0) ::_exit(2);
        const bool refused = failureOf([] { writeFile("mine", "x"); }) ==
                             "cannot write 'mine': it is read-only (Permission denied)";
        ::_exit(refused ? 0 : 1); // without the checks for leaks, which nobody may make
    };
    EXPECT_EXIT(asNobody(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(read("mine"), "mine");
    EXPECT_EQ(entries(), 3U);
}

/// A name goes to the system up to a NUL: another file.
TEST_F(Replacing, ANameWithANulIsNotCut) {
    writeFile("x", "mine");
    const fs::path name{std::string("x\0.csv", 6)};
    const ResultsBook book = bookFrom("data.csv");
    const auto refuses = [&](const std::string& what) {
        EXPECT_NE(what.find("x\\0"), std::string::npos) << what;
        EXPECT_NE(what.find("the name has a NUL character (\\0)"), std::string::npos) << what;
        EXPECT_EQ(read("x"), "mine");
        EXPECT_EQ(entries(), 1U);
    };
    refuses(failureOf([&] { writeFile(name, "new"); }));
    refuses(failureOf([&] { writeOutput(book, 0, nullptr, OutputFormat::Csv, name); }));
    refuses(failureOf([&] { writeOneFile(book, OutputFormat::Json, name); }));
    refuses(failureOf([&] { saveOutputs(book, name); }));
    refuses(failureOf([&] { writeBook(book, name, parseFormats("csv")); }));
    refuses(failureOf([&] { checkScriptFile(name, {}); }));
}

} // namespace
} // namespace korvana
