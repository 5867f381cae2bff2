#include "apps/python/binding/Frames.h"

#include "apps/python/binding/Data.h"
#include "apps/python/binding/Errors.h"

#include "host/data/DataError.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <deque>
#include <limits>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace korvana::python {
namespace {

/// The memory of an array, which is released under the interpreter's lock, by whichever thread.
std::shared_ptr<py::buffer_info> borrowed(const py::buffer& array) {
    return {new py::buffer_info(array.request()), [](py::buffer_info* info) {
                if (Py_IsInitialized() == 0) return; // then there is nothing to give it back to
                const py::gil_scoped_acquire locked;
                delete info; // NOLINT: the deleter of a pointer
            }};
}

CellType typeOf(const py::buffer_info& info) {
    const char kind = info.format.empty() ? '\0' : info.format.back();
    if (kind == 'd') return CellType::Float64;
    if (kind == 'f') return CellType::Float32;
    const bool isSigned = std::string_view("bhilq").find(kind) != std::string_view::npos;
    const bool isUnsigned = std::string_view("BHILQ?").find(kind) != std::string_view::npos;
    if (isSigned || isUnsigned) switch (info.itemsize) {
        case 1:
            return isSigned ? CellType::Int8 : CellType::UInt8;
        case 2:
            return isSigned ? CellType::Int16 : CellType::UInt16;
        case 4:
            return isSigned ? CellType::Int32 : CellType::UInt32;
        default:
            return isSigned ? CellType::Int64 : CellType::UInt64;
        }
    throw py::type_error("an array of numbers is needed, not of the format '" + info.format + "'");
}

CellBlock blockOf(const py::buffer& array, std::int64_t cases) {
    const std::shared_ptr<py::buffer_info> info = borrowed(array);
    if (info->ndim != 1 || info->size != cases)
        throw py::type_error("an array of one value per case is needed");
    return {typeOf(*info), info->ptr, info->strides.front(), info};
}

/// Objects of a list or of an array, one by one. Calls into Python may change a list.
class Objects {
public:
    explicit Objects(const py::object& source) {
        if (PyList_Check(source.ptr())) {
            list_ = source;
            return;
        }
        info_ = borrowed(py::reinterpret_borrow<py::buffer>(source));
        if (info_->ndim != 1 || info_->format.empty() || info_->format.back() != 'O')
            throw py::type_error("an array of objects is needed");
    }

    /// nullptr beyond the end.
    [[nodiscard]] PyObject* at(std::int64_t row) const {
        if (!info_) return row < PyList_GET_SIZE(list_.ptr()) ? PyList_GET_ITEM(list_.ptr(), row) : nullptr;
        return *reinterpret_cast<PyObject**>(static_cast<char*>(info_->ptr) + // NOLINT: an array of pointers
                                             row * info_->strides.front());
    }

private:
    py::object list_;
    std::shared_ptr<py::buffer_info> info_;
};

/// Numbers the different texts of a column.
class TextCollector {
public:
    explicit TextCollector(std::size_t cases) { made_.places.reserve(cases); }

    void add(std::string_view text) {
        const auto known = places_.find(text);
        if (known != places_.end()) {
            last_ = known->second;
        } else {
            last_ = static_cast<std::int32_t>(texts_.size());
            texts_.emplace_back(text);
            places_.emplace(texts_.back(), last_);
        }
        made_.places.push_back(last_);
    }
    void addPlace(std::int32_t place) { made_.places.push_back(place); }
    [[nodiscard]] std::int32_t last() const { return last_; }
    FrameTexts take() {
        made_.texts.assign(std::make_move_iterator(texts_.begin()), std::make_move_iterator(texts_.end()));
        return std::move(made_);
    }

private:
    FrameTexts made_;
    std::deque<std::string> texts_; ///< which do not move
    std::unordered_map<std::string_view, std::int32_t> places_;
    std::int32_t last_ = -1;
};

std::string_view utf8(PyObject* text) {
    Py_ssize_t length = 0;
    const char* const bytes = PyUnicode_AsUTF8AndSize(text, &length);
    if (bytes == nullptr) throw py::error_already_set();
    return {bytes, static_cast<std::size_t>(length)};
}

enum class Kind { Missing, Number, Truth, Text, Other };

class ObjectColumn {
public:
    ObjectColumn(const py::object& objects, std::int64_t cases, const py::tuple& missing,
                 const py::function& plain)
        : objects_(objects), cases_(cases), missing_(missing), plain_(plain) {}

    [[nodiscard]] Kind kindOf(PyObject* object) const {
        if (object == nullptr || object == Py_None) return Kind::Missing;
        if (PyUnicode_CheckExact(object)) return Kind::Text;
        if (PyFloat_CheckExact(object))
            return std::isnan(PyFloat_AS_DOUBLE(object)) ? Kind::Missing : Kind::Number;
        if (PyBool_Check(object)) return Kind::Truth;
        if (PyLong_CheckExact(object)) return Kind::Number;
        for (const py::handle each : missing_)
            if (each.ptr() == object) return Kind::Missing;
        return Kind::Other;
    }

    /// What the objects are together: numbers, truth values, or else texts.
    [[nodiscard]] Kind kind() {
        bool numbers = false;
        bool truths = false;
        for (row_ = 0; row_ < cases_; ++row_) {
            py::object kept;
            switch (kindOf(next(kept))) {
            case Kind::Number:
                numbers = true;
                break;
            case Kind::Truth:
                truths = true;
                break;
            case Kind::Missing:
                break;
            default:
                return Kind::Text;
            }
            if (numbers && truths) return Kind::Text;
        }
        return truths ? Kind::Truth : Kind::Number;
    }

    [[nodiscard]] std::vector<double> numbers() {
        std::vector<double> cells(static_cast<std::size_t>(cases_), std::numeric_limits<double>::quiet_NaN());
        for (row_ = 0; row_ < cases_; ++row_) {
            py::object kept;
            PyObject* const object = next(kept);
            if (kindOf(object) == Kind::Missing) continue;
            double value = PyBool_Check(object) ? (object == Py_True ? 1.0 : 0.0) : PyFloat_AsDouble(object);
            if (value == -1.0 && PyErr_Occurred() != nullptr) {
                PyErr_Clear(); // a whole number beyond all others
                value = std::numeric_limits<double>::infinity();
            }
            cells[static_cast<std::size_t>(row_)] = value;
        }
        return cells;
    }

    [[nodiscard]] FrameTexts texts() {
        TextCollector collector(static_cast<std::size_t>(cases_));
        // Most columns have few texts, each of which is one object.
        constexpr std::size_t slots = 1024;
        std::vector<std::pair<PyObject*, std::int32_t>> seen(slots, {nullptr, -1});
        for (row_ = 0; row_ < cases_; ++row_) {
            PyObject* const direct = objects_.at(row_);
            auto& slot = seen[reinterpret_cast<std::uintptr_t>(direct) / 16 % slots]; // NOLINT: a hash
            if (direct != nullptr && slot.first == direct) {
                collector.addPlace(slot.second);
                continue;
            }
            py::object kept;
            PyObject* const object = next(kept);
            switch (kindOf(object)) {
            case Kind::Missing:
                collector.addPlace(-1);
                break;
            case Kind::Text:
                collector.add(utf8(object));
                if (object == direct) slot = {direct, collector.last()};
                break;
            default:
                kept = py::str(object);
                collector.add(utf8(kept.ptr()));
                break;
            }
            if (object != direct) seen.assign(slots, {nullptr, -1}); // Python ran: addresses may be others'
        }
        return collector.take();
    }

private:
    /// The object of the row, or what stands for it.
    PyObject* next(py::object& kept) {
        PyObject* const object = objects_.at(row_);
        if (kindOf(object) != Kind::Other) return object;
        kept = plain_(py::reinterpret_borrow<py::object>(object));
        if (kindOf(kept.ptr()) == Kind::Other) kept = py::str(kept);
        return kept.ptr();
    }

    Objects objects_;
    std::int64_t cases_;
    std::int64_t row_ = 0;
    py::tuple missing_;
    py::function plain_;
};

template <class T>
std::int64_t wholeAt(const char* place) {
    T whole{};
    std::memcpy(&whole, place, sizeof whole);
    return whole;
}

/// A signed whole number at any address; -1 for other types.
std::int64_t wholeAt(const char* place, CellType type) {
    switch (type) {
    case CellType::Int8:
        return wholeAt<std::int8_t>(place);
    case CellType::Int16:
        return wholeAt<std::int16_t>(place);
    case CellType::Int32:
        return wholeAt<std::int32_t>(place);
    case CellType::Int64:
        return wholeAt<std::int64_t>(place);
    default:
        return -1;
    }
}

template <class T>
CellBlock blockOf(CellType type, std::vector<T> cells) {
    const auto owner = std::make_shared<const std::vector<T>>(std::move(cells));
    return {type, owner->data(), sizeof(T), owner};
}

ReadSettings reading(const std::string& decimal, const std::string& dates) {
    ReadSettings settings;
    if (!decimal.empty()) settings.decimalMark = decimal.front();
    if (dates == "dmy") settings.dates = DateOrder::DayMonthYear;
    if (dates == "mdy") settings.dates = DateOrder::MonthDayYear;
    if (dates == "ymd") settings.dates = DateOrder::YearMonthDay;
    return settings;
}

} // namespace

Frame::Frame(std::string name, std::int64_t cases, const std::string& decimal, const std::string& dates)
    : data_(std::move(name), cases, reading(decimal, dates)), cases_(cases) {}

void Frame::addNumbers(std::string name, const py::buffer& cells) {
    data_.addNumbers(std::move(name), blockOf(cells, cases_));
}

void Frame::addTruths(std::string name, const py::buffer& cells) {
    data_.addTruths(std::move(name), blockOf(cells, cases_));
}

void Frame::addDates(std::string name, const py::buffer& times, std::int64_t timesPerDay) {
    data_.addDates(std::move(name), blockOf(times, cases_), timesPerDay);
}

void Frame::addDurations(std::string name, const py::buffer& times, std::int64_t timesPerDay) {
    data_.addDurations(std::move(name), blockOf(times, cases_), timesPerDay);
}

void Frame::addObjects(std::string name, const py::object& objects, const py::tuple& missing,
                       const py::function& plain) {
    const Working working;
    ObjectColumn column(objects, cases_, missing, plain);
    switch (column.kind()) {
    case Kind::Number:
        return data_.addNumbers(std::move(name), blockOf(CellType::Float64, column.numbers()));
    case Kind::Truth:
        return data_.addTruths(std::move(name), blockOf(CellType::Float64, column.numbers()));
    default:
        data_.addTexts(std::move(name), column.texts());
    }
}

void Frame::addCodes(std::string name, const py::buffer& places, const py::list& texts) {
    const CellBlock block = blockOf(places, cases_);
    FrameTexts made;
    std::vector<bool> isMissing;
    for (const py::handle text : texts) {
        isMissing.push_back(text.is_none());
        made.texts.emplace_back(text.is_none() ? std::string_view{} : utf8(text.ptr()));
    }
    made.places.resize(static_cast<std::size_t>(cases_), -1);
    for (std::size_t row = 0; row < made.places.size(); ++row) {
        const char* const cell =
            static_cast<const char*>(block.first) + static_cast<std::ptrdiff_t>(row) * block.stride;
        const std::int64_t place = wholeAt(cell, block.type);
        if (place >= 0 && place < static_cast<std::int64_t>(isMissing.size()) &&
            !isMissing[static_cast<std::size_t>(place)])
            made.places[row] = static_cast<std::int32_t>(place);
    }
    data_.addTexts(std::move(name), std::move(made));
}

void bindFrames(py::module_& module) {
    py::class_<Frame>(module, "Frame")
        .def(py::init<std::string, std::int64_t, std::string, std::string>())
        .def("numbers", &Frame::addNumbers)
        .def("truths", &Frame::addTruths)
        .def("dates", &Frame::addDates)
        .def("durations", &Frame::addDurations)
        .def("objects", &Frame::addObjects)
        .def("codes", &Frame::addCodes)
        .def("unread", &Frame::addUnread)
        .def("open", [](Frame& frame, Data& data) {
            const Change use(*data.gate);
            data.active.open(frame.finish());
        });
}

} // namespace korvana::python
