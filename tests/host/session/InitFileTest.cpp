#include "host/session/InitFile.h"

#include "host/session/SessionServices.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace korvana {
namespace {

TEST(InitFileTest, ReadsSectionsKeywordsAndOddities) {
    const InitFile file = InitFile::parse("\xEF\xBB\xBFstray=1\r\n; comment=2\r\n[ Expressions ]\r\n"
                                          "cov1 = log(T_) * x = 3 \r\n\r\n#cov2=no\r\nCOV2=\r\nno keyword\r\n"
                                          "cov1=second\r\n[other]\r\ncov3=9\r\n[broken\r\ncov4=4");
    EXPECT_EQ(file.value("expressions", "COV1"), "log(T_) * x = 3");
    EXPECT_EQ(file.value("Expressions", "cov2"), "");
    EXPECT_FALSE(file.value("Expressions", "cov3"));
    EXPECT_FALSE(file.value("none", "cov1"));
    EXPECT_EQ(file.keywords("EXPRESSIONS"), (std::vector<std::string>{"cov1", "COV2", "no keyword", "cov1"}));
    EXPECT_EQ(file.keywords("other"), (std::vector<std::string>{"cov3", "cov4"}));
    EXPECT_FALSE(file.hasSection("stray"));
}

TEST(InitFileTest, LineEndsAndSectionsOfEveryKind) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        std::string text = "; a\n[E]\nx = 1\n\n[other]\nx=2\n[e]\n\ty\t=\t3\nX=4\n";
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size())
            text.replace(at, 1, end);
        InitFile file = InitFile::parse(text);
        EXPECT_EQ(file.bytes(), text);
        EXPECT_EQ(file.keywords("e"), (std::vector<std::string>{"x", "y", "X"}))
            << "sections of a name are one";
        EXPECT_EQ(file.value("e", "X"), "1");
        EXPECT_EQ(file.value("e", "Y"), "3");
        EXPECT_TRUE(file.clear("E"));
        EXPECT_FALSE(file.clear("E")) << "nothing is left";
        EXPECT_TRUE(file.keywords("e").empty());
        EXPECT_EQ(file.value("other", "x"), "2");
        EXPECT_TRUE(file.put("E", "z", "5"));
        EXPECT_TRUE(file.bytes().ends_with("[e]" + end + "z=5" + end));
    }
}

TEST(InitFileTest, WritingKeepsTheOtherLines) {
    const std::string before = "; mine\n[a]\nx=1\n\n[b]\ny=2\n";
    InitFile file = InitFile::parse(before);
    EXPECT_EQ(file.bytes(), before);
    EXPECT_TRUE(file.put("A", "X", "new"));
    EXPECT_TRUE(file.put("a", "z", "ä = b"));
    EXPECT_TRUE(file.put(" c ", "k", "v"));
    EXPECT_TRUE(file.hasSection(" c")) << "blanks around names count for nothing";
    EXPECT_EQ(file.value("c ", " k"), "v");
    EXPECT_EQ(file.bytes(), "; mine\n[a]\nX=new\nz=ä = b\n\n[b]\ny=2\n[c]\nk=v\n");

    InitFile dos = InitFile::parse("\xEF\xBB\xBF[a]\r\nx=1");
    EXPECT_TRUE(dos.put("a", "x", "2"));
    EXPECT_EQ(dos.bytes(), "\xEF\xBB\xBF[a]\r\nx=2");
}

TEST(InitFileTest, EveryByteOutsideTheSectionStays) {
    // The texts before and after the section: encodings, marks, line ends, blank lines, odd lines.
    const std::vector<std::string> heads{"",
                                         "\xEF\xBB\xBF",
                                         "; Gr\xF6\xDF"
                                         "e \x80\x99\n\n\n[other] \n\t x = \xE9\n",
                                         "\xEF\xBB\xBF# \xC3\xA9\r\n\r\n[other]\r\nno sign\r\n",
                                         "[other]\r\nx=1\nmixed=2\r\n\n",
                                         "\n \n[other]\n\r\r\ny=1\n"};
    const std::vector<std::string> tails{"", "\n\n", "[last]\nz=9", "\n[last]\r\n  z = \xFC\r\n\n",
                                         "[last]\n\r"};
    const std::vector<std::string> sections{"[Expressions]\n", "[ expressions ]\nold=1\nX=2\n",
                                            "[Expressions]\r\nold=1\r\n"};
    for (const std::string& head : heads)
        for (const std::string& tail : tails)
            for (const std::string& section : sections) {
                const std::string before = head + section + tail;
                InitFile file = InitFile::parse(before);
                EXPECT_EQ(file.bytes(), before);
                file.clear("Expressions");
                ASSERT_TRUE(file.put("Expressions", "x", "1") && file.put("Expressions", "größe", "ä"));
                const std::string after = file.bytes();
                EXPECT_TRUE(after.starts_with(head)) << before << "\n->\n" << after;
                EXPECT_TRUE(after.ends_with(tail)) << before << "\n->\n" << after;
                const InitFile back = InitFile::parse(after);
                EXPECT_EQ(back.keywords("expressions"), (std::vector<std::string>{"x", "größe"})) << after;
                EXPECT_EQ(back.value("Expressions", "GRößE"), "ä");
                EXPECT_EQ(back.isUtf8(), file.isUtf8());
            }
}

TEST(InitFileTest, AFileInWindows1252BecomesUtf8OnlyWhereItMust) {
    const std::string old = "[a]\nk=\xE9\x80\n";
    InitFile file = InitFile::parse(old);
    EXPECT_EQ(file.value("a", "k"), "é€");
    EXPECT_TRUE(file.put("b", "ü", "€"));
    EXPECT_EQ(file.bytes(), old + "[b]\n\xFC=\x80\n");
    EXPECT_TRUE(file.put("b", "beta", "β"));
    EXPECT_EQ(file.bytes(), "[a]\nk=é€\n[b]\nü=€\nbeta=β\n");
    InitFile chance = InitFile::parse("[a]\nk=\xE9\n");
    EXPECT_TRUE(chance.put("a", "k", "Ã¼")) << "in Windows-1252 these are the bytes of ü in UTF-8";
    EXPECT_EQ(InitFile::parse(chance.bytes()).value("a", "k"), "Ã¼");
    InitFile neither = InitFile::parse("[a]\nk=\x81\n");
    EXPECT_FALSE(neither.put("a", "x", "β"));
    EXPECT_FALSE(neither.put("a", "x", "\xFF"));
    EXPECT_EQ(neither.bytes(), "[a]\nk=\x81\n");
}

TEST(InitFileTest, WhatCannotStandInTheFileIsRefused) {
    InitFile file;
    EXPECT_FALSE(file.put("", "k", "v"));
    EXPECT_FALSE(file.put("s]", "k", "v"));
    EXPECT_FALSE(file.put("s", " ", "v"));
    for (const char* keyword : {"k=", ";k", "#k", "[k", "k\nk"})
        EXPECT_FALSE(file.put("s", keyword, "v")) << keyword;
    EXPECT_FALSE(file.put("s", "k", "v\n[t]"));
    EXPECT_EQ(file.bytes(), "");
}

struct FilesTest : ::testing::Test {
    FilesTest() { std::filesystem::create_directory(folder); }
    ~FilesTest() override { std::filesystem::remove_all(folder); }
    static void put(const std::filesystem::path& path, const std::string& text) {
        std::ofstream(path, std::ios::binary) << text;
    }
    static std::string get(const std::filesystem::path& path) {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>{in}, {}};
    }
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("korvana-init-" + std::to_string(getpid()));
    SessionParts parts;
    SessionFiles files{parts};
};

TEST_F(FilesTest, TheServiceReadsWhatItWroteAndReportsWhatItCannotWrite) {
    const std::string path = folder / "e.ini";
    std::string value = "kept";
    std::vector<std::string> keywords{"old"};
    EXPECT_FALSE(files.GetInitKeywordPrivate(path, "Expressions", "a", value));
    EXPECT_EQ(value, "kept");
    EXPECT_FALSE(files.EnumPrivateKeywords(path, "Expressions", keywords));
    EXPECT_TRUE(keywords.empty());

    EXPECT_TRUE(files.PutInitKeywordPrivate(path, "Expressions", "b", "2"));
    EXPECT_TRUE(files.PutInitKeywordPrivate(path, "Expressions", "a", "1"));
    EXPECT_TRUE(files.PutInitKeywordPrivate(path, "Expressions", "B", "3"));
    EXPECT_TRUE(files.GetInitKeywordPrivate(path, "expressions", "b", value));
    EXPECT_EQ(value, "3");
    EXPECT_TRUE(files.EnumPrivateKeywords(path, "Expressions", keywords));
    EXPECT_EQ(keywords, (std::vector<std::string>{"B", "a"}));
    EXPECT_FALSE(files.EnumPrivateKeywords(path, "Other", keywords));

    const std::string latin = folder / "latin.ini";
    const std::string text = "[Expressions]\nGr\xF6\xDF"
                             "e=1\n; old\nx=" +
                             std::string(1024, '1') + "\n";
    std::ofstream(latin, std::ios::binary) << text;
    EXPECT_TRUE(files.GetInitKeywordPrivate(latin, "expressions", "x", value));
    EXPECT_EQ(value.size(), 1024U);
    EXPECT_TRUE(files.EnumPrivateKeywords(latin, "expressions", keywords));
    EXPECT_EQ(keywords, (std::vector<std::string>{"Größe", "x"}));
    EXPECT_TRUE(files.ClearInitSection(latin, "expressions"));
    EXPECT_TRUE(files.PutInitKeywordPrivate(latin, "Expressions", "y", "2"));
    EXPECT_EQ(get(latin), "[Expressions]\n; old\ny=2\n");
    EXPECT_TRUE(files.ClearInitSection(folder / "absent.ini", "Expressions"));
    EXPECT_FALSE(std::filesystem::exists(folder / "absent.ini"));
    const std::string vast = folder / "vast.ini";
    std::ofstream(vast, std::ios::binary) << text << std::string((1 << 20) - text.size() + 1, '\n');
    EXPECT_FALSE(files.EnumPrivateKeywords(vast, "expressions", keywords)) << "no such file is that long";
    EXPECT_FALSE(files.ClearInitSection(vast, "expressions"));
    EXPECT_FALSE(files.ClearInitSection(folder, "Expressions")) << "a folder is no file";

    EXPECT_FALSE(files.PutInitKeywordPrivate(folder / "none" / "e.ini", "s", "k", "v"));
    ASSERT_FALSE(parts.book->messages.empty());
    EXPECT_NE(parts.book->messages.back().text.find("e.ini"), std::string::npos);
    EXPECT_FALSE(files.PutInitKeywordPrivate(folder, "s", "k", "v")) << "a folder is no file";
}

TEST_F(FilesTest, WhatIsNoInitialisationFileIsNotWrittenTo) {
    const auto written = [this](const std::string& path) {
        const bool cleared = files.ClearInitSection(path, "Expressions");
        const bool put = files.PutInitKeywordPrivate(path, "Expressions", "k", "v");
        EXPECT_EQ(cleared, put) << path;
        return cleared || put;
    };
    const std::string path = folder / "any";
    const std::string nul = std::string{"[a]\nx=1"} + '\0' + "\n";
    for (const std::string& text :
         {std::string{"\x1f\x8b\x08gz"}, nul, std::string{"[a]\nx=\x01"}, std::string{"t,e\n1,0\n"},
          std::string{"{\"a\": [1]}"}, std::string{"[1,\n2]\n"}, std::string{"[a] x\n"}, std::string{"[a\n"},
          std::string{"; c\nx=1\n[a]\n"}, std::string{"\xFF\xFE[\0a\0]\0", 8}, std::string{"[a]\n\x81=1\n"},
          "[a]\n" + std::string(InitFile::longest, '\n')}) {
        put(path, text);
        parts.book->messages.clear();
        EXPECT_FALSE(written(path)) << text.substr(0, 20);
        EXPECT_EQ(get(path), text);
        ASSERT_EQ(parts.book->messages.size(), 2U);
        EXPECT_NE(parts.book->messages[0].text.find("cannot write '" + path + "': "), std::string::npos);
    }
    for (const std::string text :
         {"", "\n", "; c\n\r\n# d\r\n", "\xEF\xBB\xBF\n [a] \nx\n", "; c\r[\xE9]\r"}) {
        put(path, text);
        EXPECT_TRUE(written(path)) << text << parts.book->messages.back().text;
        EXPECT_TRUE(get(path).starts_with(text));
    }
    // The data file, by all its names, even if it could be written to.
    put(path, "[a]\n");
    std::filesystem::create_symlink(path, folder / "link");
    std::filesystem::create_hard_link(path, folder / "hard");
    parts.data.open(DataSet(path, 0));
    for (const char* name : {"any", "link", "hard", "./any"}) {
        EXPECT_FALSE(written(folder / name)) << name;
        EXPECT_NE(parts.book->messages.back().text.find("it is the data file"), std::string::npos);
    }
    EXPECT_EQ(get(path), "[a]\n");
}

TEST_F(FilesTest, LinksPermissionsAndEncodingsAreKept) {
    namespace fs = std::filesystem;
    fs::create_directory(folder / "sub");
    const fs::path real = folder / "sub" / "real.ini";
    for (const auto& [link, target] : {std::pair{"one", "sub/real.ini"}, std::pair{"two", "one"}})
        fs::create_symlink(target, folder / link);
    const auto saves = [this](const std::string& path) {
        return files.ClearInitSection(path, "E") && files.PutInitKeywordPrivate(path, "E", "n", "1") &&
               files.PutInitKeywordPrivate(path, "E", "ä", "2");
    };
    EXPECT_TRUE(saves(folder / "two")) << "a link to what is not there yet";
    EXPECT_EQ(get(real), "[E]\nn=1\nä=2\n");
    for (const int mode : {0600, 0640, 0664, 0755}) {
        put(real, "[E]\n\xE4=0\n");
        fs::permissions(real, static_cast<fs::perms>(mode));
        EXPECT_TRUE(saves(folder / "two"));
        EXPECT_EQ(get(real), "[E]\nn=1\n\xE4=2\n") << "also while all is ASCII the encoding is known";
        EXPECT_EQ(static_cast<int>(fs::status(real).permissions()), mode);
        EXPECT_TRUE(fs::is_symlink(folder / "one") && fs::is_symlink(folder / "two"));
    }
    EXPECT_TRUE(files.PutInitKeywordPrivate(real, "E", "β", "3"));
    EXPECT_NE(parts.book->messages.back().text.find("is UTF-8 now"), std::string::npos);
    fs::create_symlink("round", folder / "round");
    EXPECT_FALSE(saves(folder / "round"));

    // Nothing is read-only for root.
    fs::permissions(folder, fs::perms::all);
    const fs::path own = folder / "own.ini";
    put(own, "[E]\n");
    fs::permissions(own, fs::perms::owner_read | fs::perms::others_read);
    const auto asNobody = [&] {
        if (::geteuid() == 0 && ::setuid(65534) != 0) std::exit(2);
        const bool refused =
            !saves(own) && parts.book->messages.back().text.find("read-only") != std::string::npos;
        std::exit(refused ? 0 : 1);
    };
    EXPECT_EXIT(asNobody(), ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(get(own), "[E]\n");
}

TEST_F(FilesTest, APipeIsReadOnce) {
    const std::string pipe = folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const auto& [text, fits] :
         {std::pair{std::string{"[E]\nk=\xE4\n"}, true}, {std::string(InitFile::longest + 1, '\n'), false}}) {
        std::thread writer([&pipe, &text = text] {
            std::ofstream out(pipe, std::ios::binary);
            out << text;
        });
        parts.scriptFile = pipe;
        std::string path;
        std::string value;
        EXPECT_EQ(files.DoFileOpenDlg("Open File", "", "", path), fits);
        for (int again = 0; again < 2; ++again)
            EXPECT_EQ(files.GetInitKeywordPrivate(pipe, "e", "K", value), fits);
        writer.join();
        EXPECT_EQ(value, fits ? "ä" : "");
    }
    parts.scriptFile = "/dev/null";
    std::string path;
    EXPECT_FALSE(files.DoFileOpenDlg("Open File", "", "", path));
    EXPECT_FALSE(files.PutInitKeywordPrivate(pipe, "s", "k", "v"));
}

TEST_F(FilesTest, AScriptNamesTheFileOfItsNextOperation) {
    std::string path = "kept";
    const auto opens = [&] { return files.DoFileOpenDlg("Open File", "*.INI", ".INI", path); };
    const auto saves = [&] { return files.DoFileSaveAsDlg("Save As File", "NEW.INI", ".INI", path); };
    const auto told = [&](const std::string& what) {
        return !parts.book->messages.empty() &&
               parts.book->messages.back().text.find(what) != std::string::npos;
    };
    EXPECT_FALSE(opens());
    EXPECT_TRUE(told("'Open File' was cancelled"));
    for (const auto& [wrong, why] :
         {std::pair{folder / "none.ini", "No such file"}, std::pair{folder, "it is a folder"},
          std::pair{folder / std::string("x\0.ini", 6), "x\\0.ini cannot be read: the name has a NUL"}}) {
        parts.scriptFile = wrong;
        EXPECT_FALSE(opens());
        EXPECT_TRUE(told(why)) << parts.book->messages.back().text;
    }
    EXPECT_EQ(path, "kept");
    parts.scriptFile = folder / "new.txt";
    ASSERT_TRUE(saves());
    EXPECT_EQ(path, folder / "new.txt") << "as the script says";
    EXPECT_FALSE(saves()) << "for one dialog only";
    ASSERT_TRUE(files.PutInitKeywordPrivate(path, "s", "k", "v"));
    parts.scriptFile = path;
    EXPECT_TRUE(opens());

    // A person's answers come from the front end.
    struct Person final : FrontEnd {
        std::optional<std::string> fileToOpen(const FileRequest& request) override {
            return std::string{request.title}.append(request.defaultName).append(request.extension);
        }
    } person;
    parts.frontEnd = &person;
    parts.automation = false;
    const std::size_t messages = parts.book->messages.size();
    EXPECT_TRUE(opens());
    EXPECT_EQ(path, "Open File*.INI.INI");
    EXPECT_FALSE(saves());
    EXPECT_EQ(parts.book->messages.size(), messages) << "who cancels knows";
}

} // namespace
} // namespace korvana
