#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "host/results/JsonText.h"
#include "host/results/ResultsBook.h"

namespace korvana {

/// Writes where the outputs of a book came from: the runs once, and for each output its id, its run and the
/// settings of the dialog that made it.
class JsonOrigins {
public:
    JsonOrigins(const ResultsBook& book, JsonText& json);

    /// [{"data": {...}, "dialogs": [...]}]
    void writeRuns();
    /// "id": ..., "origin": {...}, for the output at this place in the book
    void write(std::size_t place);

private:
    const ResultsBook& book_;
    JsonText& json_;
    std::vector<std::string> ids_;
    std::vector<const RunOrigin*> runs_; ///< in the order of their first outputs
};

} // namespace korvana
