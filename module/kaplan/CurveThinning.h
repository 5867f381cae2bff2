#pragma once

#include <cstddef>
#include <vector>

namespace ozm::survival {

/// A page on which a curve over time is drawn: times from 0 to `end` across, 0 to 1 up. By default the fields
/// of its grid are the dots of a printed page at 600 to the inch, finer than any screen.
struct CurvePage {
    double end = 0.0;
    int columns = 4096;
    int rows = 4096;

    [[nodiscard]] int Column(double x) const;
    [[nodiscard]] int Row(double y) const;
};

/// A step function of any length, thinned to what a page can show. Of the points in one column of the page it
/// keeps the lowest, the highest and the last: drawn as steps they cover the same fields as all of them, for
/// within a column a step function covers every row between its lowest and its highest value, and it
/// continues into the next column from its last.
class ThinnedSteps {
public:
    explicit ThinnedSteps(CurvePage page) : page_(page) {}

    /// The next point; x ascends.
    void Add(double x, double y);
    /// After the last point: x and y hold those kept, in their order.
    void Close();

    std::vector<double> x;
    std::vector<double> y;

private:
    struct Point {
        double x = 0.0;
        double y = 0.0;
        std::size_t place = 0; ///< in the order added
    };

    CurvePage page_;
    int column_ = -1; ///< of the pending points; -1: there are none
    std::size_t added_ = 0;
    Point lowest_;
    Point highest_;
    Point last_;
};

/// Marks on a falling curve, in its order: one per field of the page.
class ThinnedMarks {
public:
    explicit ThinnedMarks(CurvePage page) : page_(page) {}

    void Add(double x, double y);

    std::vector<double> x;
    std::vector<double> y;

private:
    CurvePage page_;
    int column_ = -1;
    int row_ = -1;
};

/// The ascending times of a long list, gathered at multiples of a step: each counts at the last multiple that
/// is not beyond it. The step is a power of ten that goes into the range 1000 times or more, so that the
/// ticks of an axis are multiples too and the numbers at risk there are exact.
class GatheredTimes {
public:
    /// `end` is the last time that will come. A range of 0 has no step: equal times are counted together.
    explicit GatheredTimes(double end);

    void Add(double time);
    [[nodiscard]] double Step() const { return step_; }

    std::vector<double> times;
    std::vector<double> counts;

private:
    double step_ = 0.0;
};

} // namespace ozm::survival
