#include "host/session/InitFile.h"

#include "host/session/SessionServices.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
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
    EXPECT_EQ(file.keywords("EXPRESSIONS"), (std::vector<std::string>{"cov1", "COV2", "cov1"}));
    EXPECT_EQ(file.keywords("other"), (std::vector<std::string>{"cov3", "cov4"}));
    EXPECT_FALSE(file.hasSection("stray"));
}

TEST(InitFileTest, LineEndsAndSectionsOfEveryKind) {
    for (const std::string end : {"\n", "\r\n", "\r"}) {
        std::string text = "; a\n[E]\nx = 1\n\n[other]\nx=2\n[e]\n\ty\t=\t3\nX=4\n";
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += end.size())
            text.replace(at, 1, end);
        InitFile file = InitFile::parse(text);
        EXPECT_EQ(file.text(), text);
        EXPECT_EQ(file.keywords("e"), (std::vector<std::string>{"x", "y", "X"})) << "sections of a name are one";
        EXPECT_EQ(file.value("e", "X"), "1");
        EXPECT_EQ(file.value("e", "Y"), "3");
        EXPECT_TRUE(file.clear("E"));
        EXPECT_FALSE(file.clear("E")) << "nothing is left";
        EXPECT_TRUE(file.keywords("e").empty());
        EXPECT_EQ(file.value("other", "x"), "2");
        EXPECT_TRUE(file.put("E", "z", "5"));
        EXPECT_EQ(file.text().find("[e]" + end + "z=5" + end), file.text().size() - 6 - 2 * end.size());
    }
}

TEST(InitFileTest, WritingKeepsTheOtherLines) {
    const std::string before = "; mine\n[a]\nx=1\n\n[b]\ny=2\n";
    InitFile file = InitFile::parse(before);
    EXPECT_EQ(file.text(), before);
    EXPECT_TRUE(file.put("A", "X", "new"));
    EXPECT_TRUE(file.put("a", "z", "ä = b"));
    EXPECT_TRUE(file.put(" c ", "k", "v"));
    EXPECT_TRUE(file.hasSection(" c")) << "blanks around names count for nothing";
    EXPECT_EQ(file.value("c ", " k"), "v");
    EXPECT_EQ(file.text(), "; mine\n[a]\nX=new\nz=ä = b\n\n[b]\ny=2\n[c]\nk=v\n");

    InitFile dos = InitFile::parse("\xEF\xBB\xBF[a]\r\nx=1");
    EXPECT_TRUE(dos.put("a", "x", "2"));
    EXPECT_EQ(dos.text(), "\xEF\xBB\xBF[a]\r\nx=2\r\n");
}

TEST(InitFileTest, WhatCannotStandInTheFileIsRefused) {
    InitFile file;
    EXPECT_FALSE(file.put("", "k", "v"));
    EXPECT_FALSE(file.put("s]", "k", "v"));
    EXPECT_FALSE(file.put("s", " ", "v"));
    for (const char* keyword : {"k=", ";k", "#k", "[k", "k\nk"})
        EXPECT_FALSE(file.put("s", keyword, "v")) << keyword;
    EXPECT_FALSE(file.put("s", "k", "v\n[t]"));
    EXPECT_EQ(file.text(), "");
}

struct FilesTest : ::testing::Test {
    FilesTest() { std::filesystem::create_directory(folder); }
    ~FilesTest() override { std::filesystem::remove_all(folder); }
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
    std::ifstream written(latin, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>{written}, {}), "[Expressions]\n; old\ny=2\n");
    EXPECT_TRUE(files.ClearInitSection(folder / "absent.ini", "Expressions"));
    EXPECT_FALSE(std::filesystem::exists(folder / "absent.ini"));
    const std::string vast = folder / "vast.ini";
    std::ofstream(vast, std::ios::binary) << text << std::string((1 << 20) - text.size() + 1, '\n');
    EXPECT_FALSE(files.EnumPrivateKeywords(vast, "expressions", keywords)) << "no such file is that long";
    EXPECT_FALSE(files.ClearInitSection(vast, "expressions"));
    EXPECT_FALSE(files.ClearInitSection(folder, "Expressions")) << "a folder is no file";

    EXPECT_FALSE(files.PutInitKeywordPrivate(folder / "none" / "e.ini", "s", "k", "v"));
    ASSERT_EQ(parts.book->messages.size(), 1U);
    EXPECT_NE(parts.book->messages[0].text.find("e.ini"), std::string::npos);
    EXPECT_FALSE(files.PutInitKeywordPrivate(folder, "s", "k", "v")) << "a folder is no file";
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
         {std::pair{folder / "none.ini", "No such file"}, std::pair{folder, "it is a folder"}}) {
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
