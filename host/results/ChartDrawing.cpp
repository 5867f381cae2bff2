#include "host/results/ChartDrawing.h"

#include <algorithm>
#include <chrono>
#include <dlfcn.h>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "host/results/DrawingLibrary.h"
#include "host/results/LibraryFolders.h"
#include "host/results/WorkApart.h"

namespace korvana {
namespace {

namespace fs = std::filesystem;

ChartDrawer own = nullptr;

/// About a hundred times the time that a picture takes.
constexpr Work drawing{"drawing", noMemoryToDraw, std::chrono::seconds{120}};

Picture notDrawn(const std::string& why) {
    return {.bytes = {}, .error = "the drawing library " + why};
}

Picture drawWithLibrary(const ozm::CChartInfo& info, PictureFormat format, const PictureOptions& options) {
    const std::vector<fs::path> folders = libraryFolders();
    const auto folder = std::find_if(folders.begin(), folders.end(), [](const fs::path& each) {
        std::error_code error;
        return fs::exists(each / KORVANA_DRAWING_FILE, error);
    });
    if (folder == folders.end())
        return notDrawn("is not installed: there is no " + (folders.front() / KORVANA_DRAWING_FILE).string());
    const fs::path file = *folder / KORVANA_DRAWING_FILE;
    // Never unloaded: the library registers functions that are called when the program ends.
    void* const library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return notDrawn(std::string("cannot be loaded: ") + dlerror());
    const auto draw = reinterpret_cast<DrawingEntry*>(dlsym(library, drawingEntry));
    if (draw == nullptr) return notDrawn("is of another version: " + file.string());
    Picture picture;
    draw(info, format, options, picture);
    return picture;
}

} // namespace

void useChartDrawer(ChartDrawer drawer) {
    own = drawer;
}

Picture drawChart(const ozm::CChartInfo& info, PictureFormat format, const PictureOptions& options) {
    if (own != nullptr) return own(info, format, options);
    const auto draw = [&] { return drawWithLibrary(info, format, options); };
    std::optional<Answer> answer = workApart(drawing, [&] {
        Picture picture = draw();
        return Answer{std::move(picture.bytes), std::move(picture.error)};
    });
    return answer ? Picture{std::move(answer->bytes), std::move(answer->error)} : draw();
}

} // namespace korvana
