#include "host/session/ModuleLibrary.h"

#include "tests/support/Refusal.h"

#include <cstdlib>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace korvana {
namespace {

TEST(ModuleLibraryTest, ErrorsNameEveryPathAndReason) {
    Dl_info info{};
    ASSERT_NE(dladdr(reinterpret_cast<const void*>(&ozm::BaseDialogInterface), &info), 0);
    const std::string text = test::refusalOf<ModuleError>([&] {
        loadAnalysis({"/nowhere/a.so", "/dev/null", info.dli_fname});
    });
    EXPECT_NE(text.find("/nowhere/a.so: not there"), std::string::npos) << text;
    EXPECT_NE(text.find("\n  /dev/null: "), std::string::npos) << text;
    EXPECT_NE(text.find("has no Lum6NewAnalysis"), std::string::npos) << text;
}

TEST(ModuleLibraryTest, TheEnvironmentWinsOverEveryFolder) {
    const char* set = std::getenv("KORVANA_MODULE");
    const std::string before = set != nullptr ? set : "";
    setenv("KORVANA_MODULE", "/elsewhere/mine.so", 1);
    EXPECT_EQ(modulePaths("m.so", {"/here"}), (std::vector<std::filesystem::path>{"/elsewhere/mine.so"}));
    setenv("KORVANA_MODULE", "/tmp", 1);
    EXPECT_EQ(modulePaths("m.so"), (std::vector<std::filesystem::path>{"/tmp/m.so"}));
    unsetenv("KORVANA_MODULE");
    const auto paths = modulePaths("m.so", {"/here"});
    EXPECT_EQ(paths.front(), "/here/m.so");
    EXPECT_EQ(paths[1].parent_path(), std::filesystem::read_symlink("/proc/self/exe").parent_path());
    if (!before.empty()) setenv("KORVANA_MODULE", before.c_str(), 1);
}

} // namespace
} // namespace korvana
