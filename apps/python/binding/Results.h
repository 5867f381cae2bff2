#pragma once

#include "apps/python/binding/Module.h"
#include "apps/python/binding/Use.h"
#include "host/results/ResultsBook.h"

#include <cstddef>
#include <filesystem>
#include <memory>

namespace korvana::python {

/// The results of an analysis, which live on when that and its application are gone.
struct Book {
    std::shared_ptr<const ResultsBook> book;
    /// Of the application: while another thread works with its analysis, the book may grow.
    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
};

/// One output of a book.
struct Output {
    Book of;
    std::size_t place;

    [[nodiscard]] const ResultsBook::Output& get() const {
        of.gate->check();
        return of.book->outputs.at(place);
    }
    template <class T>
    [[nodiscard]] const T& as() const {
        return std::get<T>(get());
    }
};

/// Raises UsageError where a script may not be written: it replaces a recorded one, and no other file.
void requireScriptFile(const std::filesystem::path& file);

/// (number, severity, text, detail)
[[nodiscard]] py::tuple messageTuple(const ResultMessage& message);

} // namespace korvana::python
