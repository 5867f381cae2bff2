#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

#include "host/charts/AtRisk.h"
#include "host/charts/ChartRenderer.h"
#include "tests/host/charts/Svg.h"
#include "tests/host/results/Books.h"

namespace korvana {
namespace {

TEST(AtRisk, WhoLeavesAtATimeIsStillAtRiskThen) {
    Leaving leaving{.times = {0.3, 2, 2, 5}, .counts = {}};
    EXPECT_EQ(leaving.atRisk(0), 4);
    EXPECT_EQ(leaving.atRisk(2), 3);
    EXPECT_EQ(leaving.atRisk(2.5), 1);
    EXPECT_EQ(leaving.atRisk(6), 0);
    EXPECT_EQ(leaving.atRisk(0.1 + 0.2), 4); // a tick of 0.1 by 0.1, a bit above 0.3
    leaving.staying = 10;
    EXPECT_EQ(leaving.atRisk(5), 11);
    EXPECT_TRUE(std::isnan(leaving.atRisk(6))); // some of the ten may have left by then
}

TEST(AtRisk, OfGatheredTimesTheNumbersAtTheirStepAreKnown) {
    const Leaving leaving{.times = {0, 0.1, 0.3, 0.7}, .counts = {1000, 1, 20, 3}, .step = 0.1, .staying = 7};
    EXPECT_EQ(leaving.all(), 1031);
    EXPECT_EQ(leaving.atRisk(0), 1031);
    EXPECT_EQ(leaving.atRisk(0.2), 30);
    EXPECT_EQ(leaving.atRisk(0.1 + 0.2), 30);
    EXPECT_EQ(leaving.atRisk(0.5), 10);
    EXPECT_TRUE(std::isnan(leaving.atRisk(0.25))); // some of the twenty may have left
}

TEST(AtRisk, NumbersStandUnderTheirTicks) {
    ozm::CChartInfo info = test::stepChart();
    info.xAxis.min = 0;
    info.xAxis.max = 10;
    EXPECT_FALSE(tellsNumbersAtRisk(info));
    info.series[0].leaving = {1, 3, 5, 5, 7, 9};
    info.series[3].leaving = {7, 7, 7};
    ASSERT_TRUE(tellsNumbersAtRisk(info));
    const auto lines = test::readSvg(renderChart(info, PictureFormat::Svg).bytes).lines;
    const std::map<std::string, double>* ticks = nullptr;
    const std::map<std::string, double>* numbers = nullptr;
    for (const auto& [y, texts] : lines) {
        if (texts.contains("10") && texts.contains("8")) ticks = &texts;
        if (texts.contains("Estimate") && texts.contains("6")) numbers = &texts;
    }
    ASSERT_NE(ticks, nullptr);
    ASSERT_NE(numbers, nullptr);
    for (const auto& [tick, number] : {std::pair{"0", "6"}, {"2", "5"}, {"4", "4"}, {"6", "2"}, {"8", "1"}})
        EXPECT_NEAR(ticks->at(tick), numbers->at(number), 1.5) << tick;
    EXPECT_LT(numbers->at("Estimate"), numbers->at("6") - 20);
    const double zero = ticks->at("0");
    // For a single curve the numbers need no label, and the axes keep their room.
    info.series[3].leaving.clear();
    for (const auto& [y, texts] : test::readSvg(renderChart(info, PictureFormat::Svg).bytes).lines) {
        if (texts.contains("6") && texts.contains("5")) {
            EXPECT_FALSE(texts.contains("Estimate"));
        }
        if (texts.contains("10") && texts.contains("8")) {
            EXPECT_LT(texts.at("0"), zero - 5);
        }
    }
    // Switched off: the picture is the same as without them.
    ozm::CChartInfo plain = info;
    plain.series[0].leaving.clear();
    info.numbersAtRisk = false;
    EXPECT_EQ(renderChart(info, PictureFormat::Svg).bytes, renderChart(plain, PictureFormat::Svg).bytes);
}

TEST(AtRisk, NumbersKnownBetweenTheTicksStandWhereTheyAreKnown) {
    ozm::CChartInfo info = test::stepChart();
    info.xAxis.min = 0;
    info.xAxis.max = 10;
    // Uneven, beginning after 0, with parts of numbers; of many times some have their number.
    for (const std::size_t count : {3U, 30U}) {
        info.series[0].x.clear();
        info.series[0].atRisk.clear();
        for (std::size_t i = 0; i < count; ++i) {
            const auto part = static_cast<double>(i) / static_cast<double>(count);
            info.series[0].x.push_back(0.31 + 9.1 * part * part);
            info.series[0].atRisk.push_back(177.5 - static_cast<double>(i));
        }
        info.series[0].y.assign(count, 0.5);
        ASSERT_TRUE(tellsNumbersAtRisk(info));
        std::size_t shown = 0;
        for (const auto& [y, texts] : test::readSvg(renderChart(info, PictureFormat::Svg).bytes).lines) {
            if (!texts.contains("177.5")) continue;
            for (std::size_t i = 0; i < count; ++i)
                shown += texts.count(std::to_string(177 - i) + ".5");
        }
        EXPECT_GE(shown, 3U);
        EXPECT_LE(shown, 8U);
    }
}

TEST(AtRisk, CurvesKeepTheirRoomHoweverManyGroupsThereAre) {
    for (const int groups : {1, 2, 12, 13, 40, 250}) {
        ozm::CChartInfo info;
        info.title = "Curves";
        info.xAxis.title = "Time";
        info.yAxis = {"Cumulative Proportion Surviving", 0.0, 1.0};
        for (int g = 0; g < groups; ++g) {
            ozm::ChartSeries& series = info.series.emplace_back();
            series.legend = "Group " + std::to_string(g + 1);
            series.group = g;
            series.x = {0, 10};
            series.y = {1, 0};
            series.leaving = {10};
        }
        double top = 0.0;
        double bottom = 0.0;
        double table = 1e9;
        int rows = 0;
        for (const auto& [y, texts] : test::readSvg(renderChart(info, PictureFormat::Svg).bytes).lines) {
            if (texts.contains("0.8")) top = y;
            if (texts.contains("0.2")) bottom = y;
            if (texts.contains("Numbers at risk")) table = y;
            if (y > table && texts.contains("1")) ++rows;
        }
        EXPECT_GT(bottom - top, 0.6 * 150) << groups; // of at least so many pixels from 0 to 1
        EXPECT_GT(table, bottom) << groups;
        EXPECT_EQ(rows, std::min(groups, 12) - (groups > 12 ? 1 : 0)) << groups;
    }
}

} // namespace
} // namespace korvana
