#include "module/kaplan/CurveThinning.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ozm::survival {
namespace {

int Field(double share, int fields) {
    return static_cast<int>(std::clamp(share * fields, 0.0, fields - 1.0));
}

} // namespace

int CurvePage::Column(double x) const {
    return end > 0.0 ? Field(x / end, columns) : 0;
}

int CurvePage::Row(double y) const {
    return Field(y, rows);
}

void ThinnedSteps::Add(double newX, double newY) {
    const Point point{newX, newY, added_++};
    const int column = page_.Column(newX);
    if (column != column_) {
        Close();
        column_ = column;
        lowest_ = highest_ = last_ = point;
        return;
    }
    if (newY < lowest_.y) lowest_ = point;
    if (newY > highest_.y) highest_ = point;
    last_ = point;
}

void ThinnedSteps::Close() {
    if (column_ < 0) return;
    column_ = -1;
    std::array points{lowest_, highest_, last_};
    const auto earlier = [](const Point& a, const Point& b) { return a.place < b.place; };
    const auto same = [](const Point& a, const Point& b) { return a.place == b.place; };
    std::sort(points.begin(), points.end(), earlier);
    const auto* const end = std::unique(points.begin(), points.end(), same);
    for (const auto* point = points.begin(); point != end; ++point) {
        x.push_back(point->x);
        y.push_back(point->y);
    }
}

void ThinnedMarks::Add(double newX, double newY) {
    const int column = page_.Column(newX);
    const int row = page_.Row(newY);
    if (column == column_ && row == row_) return;
    column_ = column;
    row_ = row;
    x.push_back(newX);
    y.push_back(newY);
}

GatheredTimes::GatheredTimes(double end) {
    if (end > 0.0) step_ = std::pow(10.0, std::floor(std::log10(end / 1000.0)));
}

void GatheredTimes::Add(double time) {
    // A multiple of the step in decimals may lie a rounding error below it.
    constexpr double belowOne = 1.0 - 1e-12;
    const double at = step_ > 0.0 ? std::floor(time / (step_ * belowOne)) * step_ : time;
    if (!times.empty() && times.back() == at) {
        counts.back() += 1.0;
        return;
    }
    times.push_back(at);
    counts.push_back(1.0);
}

} // namespace ozm::survival
