#pragma once

#include "support/CAnalysisSupport.h"

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace korvana {

/// A module that cannot be loaded; what() names every path tried and why it failed.
class ModuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// An analysis object. It keeps the library with its code loaded.
using Analysis = std::shared_ptr<ozm::CAnalysisSupport>;

/// The paths where a module of this file name is searched for, in order: the file or folder named by the
/// environment variable KORVANA_MODULE (and then nowhere else); the folders given; those of the project's own
/// libraries (LibraryFolders.h).
std::vector<std::filesystem::path> modulePaths(const std::string& fileName,
                                               const std::vector<std::filesystem::path>& folders = {});

/// The modules found (files `libOZM*.so`) in the folders of `modulePaths`, by name; each name once.
std::vector<std::filesystem::path> findModules();

/// Loads the first module found and asks its factory for an analysis object without a document. The library
/// is closed after the object is destroyed. A module's state is one per process: one analysis at a time.
/// Throws ModuleError.
Analysis loadAnalysis(const std::vector<std::filesystem::path>& paths);

} // namespace korvana
