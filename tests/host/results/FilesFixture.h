#pragma once
// For tests that write files: a folder, and a full disk.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "host/results/ResultsBook.h"
#include "tests/support/Refusal.h"

namespace korvana {

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
        std::ostringstream text; // faster than iterators
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

/// Limits the size of files, as on a full disk.
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

inline ResultsBook bigBook(std::size_t rows) {
    ResultsBook book;
    Spreadsheet sheet;
    sheet.title = "Big";
    std::vector<double> x(rows);
    std::vector<std::int32_t> n(rows);
    for (std::size_t i = 0; i < rows; ++i) {
        x[i] = 1.0 / (static_cast<double>(i) + 3.0);
        n[i] = static_cast<std::int32_t>(i);
    }
    sheet.columns.push_back({"n", "", {}, std::move(n)});
    sheet.columns.push_back({"x", "", {}, std::move(x)});
    book.append(std::move(sheet));
    return book;
}

} // namespace korvana
