#include "host/results/LibraryFolders.h"

#include <algorithm>
#include <dlfcn.h>
#include <system_error>

namespace korvana {
namespace {

namespace fs = std::filesystem;

/// The file that this code was loaded from: a program or a shared library.
fs::path ownFile() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&ownFile), &info) == 0 || info.dli_fname == nullptr) return {};
    std::error_code error;
    return fs::canonical(info.dli_fname, error);
}

void add(std::vector<fs::path>& folders, const fs::path& folder) {
    const fs::path plain = folder.lexically_normal();
    if (std::find(folders.begin(), folders.end(), plain) == folders.end()) folders.push_back(plain);
}

} // namespace

std::vector<fs::path> libraryFolders() {
    std::vector<fs::path> folders;
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path own = ownFile();
    for (const fs::path& file : {own, program}) {
        if (file.empty()) continue;
        const fs::path folder = file.parent_path();
        add(folders, folder);
        add(folders, folder / ".." / "lib" / "korvana");
        add(folders, folder / ".." / "lib");
        if (file != own || own == program) continue;
        add(folders, folder / ".." / ".." / "bin"); // python/korvana in the build
        add(folders, folder / ".." / "..");         // lib/korvana/python/korvana, installed
    }
    return folders;
}

} // namespace korvana
