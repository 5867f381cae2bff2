#pragma once

#include "apps/python/binding/Module.h"

#include "host/data/FrameData.h"

#include <cstdint>
#include <string>

namespace korvana::python {

/// Columns in memory on their way into a data set.
class Frame {
public:
    /// @param dates  dmy, mdy, ymd or empty
    Frame(std::string name, std::int64_t cases, const std::string& decimal, const std::string& dates);

    /// Arrays in native byte order of what FrameData takes; they are kept where cells are borrowed.
    void addNumbers(std::string name, const py::buffer& cells);
    void addTruths(std::string name, const py::buffer& cells);
    void addDates(std::string name, const py::buffer& times, std::int64_t timesPerDay);
    void addDurations(std::string name, const py::buffer& times, std::int64_t timesPerDay);
    /// Any objects: numbers, truth values, or else texts.
    /// @param objects  an array of objects, or a list
    /// @param plain  is called with an object that is none of these, and returns one that is, or None
    void addObjects(std::string name, const py::object& objects, const py::tuple& missing,
                    const py::function& plain);
    /// Places in a list of texts (None: missing), -1 for a missing one.
    void addCodes(std::string name, const py::buffer& places, const py::list& texts);
    void addUnread(std::string name) { data_.addUnread(std::move(name)); }

    [[nodiscard]] DataSet finish() { return data_.finish(); }

private:
    FrameData data_;
    std::int64_t cases_;
};

} // namespace korvana::python
