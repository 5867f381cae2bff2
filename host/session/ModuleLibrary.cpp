#include "host/session/ModuleLibrary.h"

#include "host/results/LibraryFolders.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <system_error>

namespace korvana {
namespace {

namespace fs = std::filesystem;

using Factory = ozm::CAnalysisSupport* (*)();
constexpr const char* factoryName = "Lum6NewAnalysis";

} // namespace

std::vector<fs::path> modulePaths(const std::string& fileName, const std::vector<fs::path>& folders) {
    std::error_code error;
    if (const char* set = std::getenv("KORVANA_MODULE"); set != nullptr && *set != '\0')
        return {fs::is_directory(set, error) ? fs::path{set} / fileName : fs::path{set}};
    std::vector<fs::path> paths;
    for (const fs::path& folder : folders)
        paths.push_back(folder / fileName);
    for (const fs::path& folder : libraryFolders())
        paths.push_back(folder / fileName);
    return paths;
}

std::vector<fs::path> findModules() {
    constexpr const char* prefix = "libOZM";
    std::vector<fs::path> found;
    const auto add = [&](const fs::path& file) {
        const auto sameName = [&](const fs::path& other) { return other.filename() == file.filename(); };
        const std::string name = file.filename().string();
        if (name.starts_with(prefix) && name.ends_with(".so") &&
            std::none_of(found.begin(), found.end(), sameName))
            found.push_back(file);
    };
    for (const fs::path& candidate : modulePaths("any")) {
        std::error_code error;
        add(candidate); // the environment variable may name a file
        for (fs::directory_iterator entry(candidate.parent_path(), error), end; !error && entry != end;
             entry.increment(error))
            add(entry->path());
    }
    std::sort(found.begin(), found.end(),
              [](const fs::path& a, const fs::path& b) { return a.filename() < b.filename(); });
    return found;
}

Analysis loadAnalysis(const std::vector<fs::path>& paths) {
    std::string tried;
    for (const fs::path& path : paths) {
        tried += "\n  " + path.string() + ": ";
        std::error_code error;
        if (!fs::exists(path, error)) {
            tried += "not there";
            continue;
        }
        // A bare name would be searched for in the system's library folders.
        void* library = dlopen(fs::absolute(path, error).c_str(), RTLD_NOW | RTLD_LOCAL);
        if (library == nullptr) {
            const std::string why = dlerror();
            // Then another file would not help.
            for (const char* const memory :
                 {"Cannot allocate memory", "cannot allocate memory", "failed to map segment"})
                if (why.find(memory) != std::string::npos)
                    throw ModuleError("there is not enough memory to load the analysis module " +
                                      path.string() + " (" + why + ")");
            tried += why;
            continue;
        }
        const std::shared_ptr<void> open(library, [](void* handle) { dlclose(handle); });
        const auto factory = reinterpret_cast<Factory>(dlsym(library, factoryName));
        if (factory == nullptr) {
            tried += std::string{"has no "} + factoryName + ", so it is no analysis module";
            continue;
        }
        ozm::CAnalysisSupport* analysis = factory();
        if (analysis == nullptr)
            throw ModuleError("the module " + path.string() + " has no memory for an analysis");
        // The deleter holds the library, and with it the code of the destructor that it runs.
        return {analysis, [open](ozm::CAnalysisSupport* object) { delete object; }};
    }
    throw ModuleError("the analysis module cannot be loaded; tried:" + tried +
                      "\nSet KORVANA_MODULE to its file, or put it beside the program.");
}

} // namespace korvana
