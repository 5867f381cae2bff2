#include <algorithm>
#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>

#include "host/charts/ChartGeometry.h"
#include "tests/host/results/Books.h"

namespace korvana {
namespace {

using ozm::ChartSeries;
using test::infinite;
using test::notANumber;
using test::series;

TEST(ChartGeometry, StepsHoldUntilTheNextPoint) {
    const ChartPath path =
        pathOf(series("", {0, 2, notANumber, 3, 4}, {1, 0.5, 0.4, 0.3, 0.2, 9}, ChartSeries::Style::Step));
    ASSERT_EQ(path.size(), 7U);
    EXPECT_EQ(path[1].x, 2.0);
    EXPECT_EQ(path[1].y, 1.0);
    EXPECT_EQ(path[2].y, 0.5);
    EXPECT_TRUE(std::isnan(path[3].x));
    EXPECT_EQ(path[4].x, 3.0); // after the gap it starts again
    EXPECT_EQ(path[5].y, 0.3);
}

TEST(ChartGeometry, ClippingCutsAtTheBorders) {
    const ChartPath inside = clipped({{-10, 0.5}, {10, 0.5}, {10, 5}, {0, 5}, {0, -5}}, {-1, 1}, {0, 1});
    ASSERT_EQ(inside.size(), 5U);
    EXPECT_EQ(inside[0].x, -1.0);
    EXPECT_EQ(inside[1].x, 1.0);
    EXPECT_TRUE(std::isnan(inside[2].y));
    EXPECT_EQ(inside[3].y, 1.0);
    EXPECT_EQ(inside[4].y, 0.0);
    EXPECT_TRUE(clipped({{-2, 0}, {-2, 1}, {0, 9}}, {-1, 1}, {0, 1}).empty());
    EXPECT_EQ(clipped({{0.2, 0.1}, {0.3, 0.1}, {0.4, 0.9}}, {0, 1}, {0, 1}).size(), 3U);
}

TEST(ChartGeometry, ThinningKeepsExtremesAndEnds) {
    ChartPath path;
    for (int i = 0; i < 100000; ++i)
        path.push_back({i / 100000.0, std::sin(i * 1.0)});
    path[50000].y = 7;
    path[50001].y = -7;
    const ChartPath few = thinned(path, {0, 1}, 500);
    EXPECT_LE(few.size(), 4U * 501U);
    const auto [low, high] =
        std::minmax_element(few.begin(), few.end(), [](auto& a, auto& b) { return a.y < b.y; });
    EXPECT_EQ(low->y, -7.0);
    EXPECT_EQ(high->y, 7.0);
    EXPECT_EQ(few.front().x, path.front().x);
    EXPECT_EQ(few.back().x, path.back().x);
}

TEST(ChartGeometry, AxesHaveRoomForAnyData) {
    const ozm::ChartAxis chosen;
    for (const auto& values : std::vector<std::vector<double>>{{},
                                                               {0},
                                                               {5, 5},
                                                               {notANumber, infinite},
                                                               {1e15, 1e15 + 1},
                                                               {1e-300, 3e-300},
                                                               {-1e199, 1e199},
                                                               {DBL_MAX}}) {
        const Extent extent = axisExtent(chosen, extentOf(values), 0.02);
        EXPECT_GT(extent.span(), 0.0);
        EXPECT_TRUE(isDrawable(extent.low) && isDrawable(extent.high));
        for (const double value : values)
            if (isDrawable(value)) {
                EXPECT_TRUE(extent.contains(value)) << value;
            }
    }
    const Extent given = axisExtent({"", 0.0, 1.0}, {-5, 5}, 0.02);
    EXPECT_EQ(given.low, 0.0);
    EXPECT_EQ(given.high, 1.0);
}

TEST(ChartGeometry, HistogramCountsEveryValueOnce) {
    // 1..16: quartiles 4 and 12, so the width is 16 / 16^(1/3) = 6.35, rounded to 5.
    std::vector<double> values(16);
    std::iota(values.begin(), values.end(), 1.0);
    const HistogramClasses classes = histogramClasses(values);
    EXPECT_EQ(classes.start, 0.0);
    EXPECT_EQ(classes.width, 5.0);
    EXPECT_EQ(countInto(classes, values), (std::vector<double>{4, 5, 5, 2}));

    std::vector<std::vector<double>> lists{{},
                                           {3},
                                           {4, 4, 4},
                                           {0, 0, 0, 0, 0, 0, 0, 0, 0, 100},
                                           {1e15, 1e15 + 2, 1e15 + 9},
                                           {notANumber, 1, infinite},
                                           {-1e199, 1e199},
                                           {0, 10},
                                           {1e-300, 1e-299}};
    std::vector<double> outlier(1000, 0.0);
    for (std::size_t i = 0; i < outlier.size(); ++i)
        outlier[i] = static_cast<double>(i % 7);
    outlier.push_back(1e12);
    lists.push_back(outlier);
    for (const auto& list : lists) {
        const HistogramClasses any = histogramClasses(list);
        EXPECT_GT(any.width, 0.0);
        EXPECT_LE(any.count, 100);
        const auto counts = countInto(any, list);
        EXPECT_EQ(std::accumulate(counts.begin(), counts.end(), 0.0),
                  static_cast<double>(std::count_if(list.begin(), list.end(),
                                                    [](double value) { return isDrawable(value); })));
        for (const double value : list)
            if (isDrawable(value)) {
                EXPECT_TRUE(value >= any.start && value <= any.end() * (1 + 1e-12) + 1e-12) << value;
            }
    }
}

} // namespace
} // namespace korvana
