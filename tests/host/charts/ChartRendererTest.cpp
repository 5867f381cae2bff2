#include <QApplication>
#include <QImage>
#include <algorithm>
#include <array>
#include <cfloat>
#include <clocale>
#include <cmath>
#include <csignal>
#include <gtest/gtest.h>
#include <numeric>
#include <set>
#include <thread>
#include <unistd.h>

#include "host/charts/ChartApplication.h"
#include "host/charts/ChartRenderer.h"
#include "tests/host/charts/Svg.h"
#include "tests/host/results/Books.h"

namespace korvana {
namespace {

using ozm::ChartSeries;
using test::infinite;
using test::notANumber;
using test::readSvg;
using test::series;
using test::Svg;

Svg drawSvg(const ozm::CChartInfo& info) {
    const Picture picture = renderChart(info, PictureFormat::Svg);
    EXPECT_TRUE(picture.drawn()) << picture.error;
    return readSvg(picture.bytes);
}

ozm::CChartInfo chartOf(std::vector<ChartSeries> list) {
    ozm::CChartInfo info;
    info.title = "Chart";
    info.series = std::move(list);
    return info;
}

TEST(ChartRenderer, SvgShowsTitlesLegendAndSeries) {
    ozm::CChartInfo info = test::stepChart();
    ChartSeries other = series("Group 2", {0, 4, 8}, {1, 0.7, 0.4}, ChartSeries::Style::Step);
    other.group = 2;
    info.series.push_back(other);
    const Svg svg = drawSvg(info);
    EXPECT_EQ(svg.viewBox, "0 0 960 640");
    for (const char* text : {"Estimate & bounds <Group 1>", "Survival time", "Proportion surviving",
                             "Estimate", "Censored", "Group 2", "0.2"})
        EXPECT_EQ(svg.texts.count(text), 1) << text;
    EXPECT_EQ(svg.texts.count("Bounds"), 1); // one entry for the pair
    EXPECT_TRUE(svg.strokes.contains("#0072b2") && svg.strokes.contains("#d55e00"));
    EXPECT_GE(svg.dashed, 2);
    EXPECT_EQ(svg.fonts, (QSet<QString>{"13", "15", "18"}));
    EXPECT_EQ(drawSvg(chartOf({series("Only", {0, 1}, {0, 1})})).texts.count("Only"), 0); // needs no legend
}

/// Where each text stands.
std::map<std::string, QPointF> placesOf(const Svg& svg) {
    std::map<std::string, QPointF> places;
    for (const auto& [y, line] : svg.lines)
        for (const auto& [text, x] : line)
            places[text] = QPointF(x, y);
    return places;
}

TEST(ChartRenderer, LogarithmicAxesHaveEqualRatiosAtEqualDistances) {
    ChartSeries points = series("Ratios", {0.2, 1, 6}, {1, 2, 3}, ChartSeries::Style::Markers);
    points.marker = ChartSeries::Marker::Square;
    ozm::CChartInfo info = chartOf({points});
    info.xAxis.logarithmic = true;
    const auto places = placesOf(drawSvg(info));
    ASSERT_TRUE(places.contains("0.25") && places.contains("0.5") && places.contains("4"));
    // Centred labels of different widths: half of what they differ by.
    EXPECT_NEAR(places.at("0.5").x() - places.at("0.25").x(), places.at("4").x() - places.at("2").x(), 8);
    // Values, and ranges, that have no logarithm.
    for (const auto& [min, max] : {std::pair{0.0, 0.0}, {-1.0, 5.0}, {0.5, 1e9}, {1e-300, 1e300}}) {
        info.xAxis.min = min;
        info.xAxis.max = max;
        for (const std::vector<double>& x : {std::vector<double>{0, 1, 2},
                                             {-3, -2, -1},
                                             {1, 1, 1},
                                             {notANumber, infinite, 1},
                                             {1e-9, 1, 1e9}}) {
            info.series[0].x = x;
            EXPECT_GT(drawSvg(info).texts.size(), 2) << min << " " << x[0];
        }
    }
}

TEST(ChartRenderer, NamesStandAtTheirPlacesOfAnAxis) {
    for (const int count : {1, 3, 40}) {
        ChartSeries points = series("Ratios", {}, {}, ChartSeries::Style::Markers);
        ozm::CChartInfo info = chartOf({points});
        for (int k = 1; k <= count; ++k) {
            info.series[0].x.push_back(k * k);
            info.series[0].y.push_back(k);
            info.yAxis.names.push_back("name " + std::to_string(k) + (k == 1 ? std::string(300, 'x') : ""));
        }
        info.yAxis.min = 0.5;
        info.yAxis.max = count + 0.5;
        const Svg svg = drawSvg(info);
        EXPECT_EQ(
            std::ranges::count_if(svg.texts, [](const QString& text) { return text.startsWith("name "); }),
            count);
        const auto places = placesOf(svg);
        double above = 1e9;
        for (int k = 2; k <= count; ++k) { // upwards, without touching each other
            const double y = places.at("name " + std::to_string(k)).y();
            EXPECT_LT(y, above - 8) << k;
            above = y;
        }
    }
}

/// Not some with an exponent beside others without.
TEST(ChartRenderer, AxesHaveTheirNumbersInPlainDigits) {
    for (double power = 1000; power <= 1e7; power *= 10) {
        for (const double most : {power, 1.25 * power, 4 * power, 9 * power}) {
            ozm::CChartInfo info = chartOf({series("", {0, most}, {-most, most})});
            info.title = "";
            int numbers = 0;
            for (const QString& text : drawSvg(info).texts) {
                bool number = false;
                (void)text.toDouble(&number);
                numbers += number ? 1 : 0;
                EXPECT_TRUE(number && !text.contains('e')) << text.toStdString() << " up to " << most;
            }
            EXPECT_GE(numbers, 6) << most;
        }
    }
}

TEST(ChartRenderer, NothingIsPaintedOutsideAGivenRange) {
    ozm::CChartInfo info =
        chartOf({series("far", {-1e6, 0.5, 1e6}, {-1e9, 0.5, 1e9}),
                 series("marks", {0.5, 99}, {0.5, 0.5}, ChartSeries::Style::Markers),
                 series("steps", {-50, 0.2, 50}, {0.2, 1e300, 0.2}, ChartSeries::Style::Step)});
    info.xAxis = {"x", 0, 1};
    info.yAxis = {"y", 0, 1};
    const Svg svg = drawSvg(info);
    EXPECT_GT(svg.farthest, 0.0);
    EXPECT_LE(svg.farthest, 960.0);
}

QImage imageOf(const ozm::CChartInfo& info) {
    return QImage::fromData(QByteArray::fromStdString(renderChart(info, PictureFormat::Png).bytes));
}

/// How many pixels of each column are blue, as the first group is, or drawn in a tint of it.
std::vector<int> blueByColumn(const ozm::CChartInfo& info) {
    const QImage image = imageOf(info);
    std::vector<int> blue(static_cast<std::size_t>(image.width()), 0);
    for (int row = 0; row < image.height(); ++row)
        for (int column = 0; column < image.width(); ++column)
            if (QColor(image.pixel(column, row)).blue() > QColor(image.pixel(column, row)).red() + 30)
                ++blue[static_cast<std::size_t>(column)];
    return blue;
}

TEST(ChartRenderer, LinesAndMarkersAreWholeAtTheEndsOfAGivenRange) {
    const auto blueOf = [](double y, ChartSeries::Style style) {
        ozm::CChartInfo info = chartOf({series("", {0, 1}, {y, y}, style)});
        info.xAxis = {"x", 0, 1};
        info.yAxis = {"y", 0, 1};
        const std::vector<int> blue = blueByColumn(info);
        return std::accumulate(blue.begin(), blue.end(), 0);
    };
    for (const auto style :
         {ChartSeries::Style::Line, ChartSeries::Style::Step, ChartSeries::Style::Markers}) {
        const int whole = blueOf(0.5, style);
        EXPECT_GT(whole, 200);
        for (const double y :
             {0.0, 0.004, 0.009, 0.992, 0.997, 1.0}) // up to half is gone when the frame cuts it
            EXPECT_GT(blueOf(y, style), 0.85 * whole) << y;
    }
}

TEST(ChartRenderer, ACurveIsSeenHoweverManyMarksItCarries) {
    for (const int marks : {0, 10, 100, 4000, 100000}) {
        std::vector<double> x(static_cast<std::size_t>(marks));
        for (std::size_t i = 0; i < x.size(); ++i)
            x[i] = (static_cast<double>(i) + 0.5) / marks;
        ChartSeries censored = series("", x, std::vector<double>(x.size(), 0.5), ChartSeries::Style::Markers);
        censored.role = ChartSeries::Role::Censored;
        const std::vector<int> blue = blueByColumn(chartOf({series("", {0, 1}, {0.5, 0.5}), censored}));
        const auto curve = std::count_if(blue.begin(), blue.end(), [](int n) { return n >= 3 && n <= 5; });
        const auto marked = std::count_if(blue.begin(), blue.end(), [](int n) { return n > 8; });
        EXPECT_GT(curve, 1100) << marks; // of some 1,700 columns
        EXPECT_GE(marked, 2 * std::min(marks, 100)) << marks;
    }
}

TEST(ChartRenderer, NotesStandBelowWhateverTheirLength) {
    ozm::CChartInfo info = test::stepChart();
    const auto before = drawSvg(info).texts.size();
    info.notes = {"The first 32,000 of 10,000,000 observations are shown.", "", test::awkwardText,
                  std::string(300, 'w') + " " + std::string(20000, 'v')};
    for (int word = 0; word < 60; ++word)
        info.notes[1] += "word" + std::to_string(word) + " ";
    const Svg svg = drawSvg(info);
    EXPECT_EQ(svg.texts.count(QString::fromStdString(info.notes[0])), 1);
    const QString all = svg.texts.join(' ');
    for (int word = 0; word < 60; ++word)
        EXPECT_TRUE(all.contains("word" + QString::number(word))) << word;
    EXPECT_GT(svg.texts.size(), before + 4);
    EXPECT_LE(svg.farthest, 960.0);
}

TEST(ChartRenderer, BoundsOfABandShareAnEntry) {
    ozm::CChartInfo info = test::stepChart();
    for (const auto& [lower, upper, shown] : {std::array{"95% lower", "95% upper", "95% limits"},
                                              {"97.5% lower", "97.5% upper", "97.5% limits"},
                                              {"Bounds", "Bounds", "Bounds"},
                                              {"95% low", "95% lower", "95% limits"},
                                              {"low", "high", "low, high"},
                                              {"", "high", "high"}}) {
        info.series[1].legend = lower;
        info.series[2].legend = upper;
        const QStringList texts = drawSvg(info).texts;
        EXPECT_EQ(texts.count(shown), 1) << shown;
        EXPECT_EQ(texts.count("Censored"), 1);
        if (QString(lower) != shown) {
            EXPECT_EQ(texts.count(lower), 0) << lower;
        }
    }
}

TEST(ChartRenderer, MarkersStandInTheLegend) {
    ozm::CChartInfo info =
        chartOf({series("one", {0, 1, 2}, {0, 1, 0}), series("two", {0, 1, 2}, {1, 0, 1})});
    info.series[0].marker = ChartSeries::Marker::Circle;
    info.series[1].marker = ChartSeries::Marker::Square;
    EXPECT_EQ(drawSvg(info).circles, 3 + 1);
}

TEST(ChartRenderer, PngIsCrispAndNotBlank) {
    const QImage image = imageOf(test::stepChart());
    ASSERT_EQ(image.size(), QSize(1920, 1280));
    EXPECT_EQ(image.pixel(2, 2), 0xFFFFFFFF);
    int dark = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (qGray(image.pixel(x, y)) < 60) ++dark;
    EXPECT_GT(dark, 2000); // axes and texts
}

TEST(ChartRenderer, DrawsWhateverItIsGiven) {
    std::vector<double> many(32000);
    std::iota(many.begin(), many.end(), 0.0);
    std::vector<double> jumps(many);
    for (double& value : jumps)
        value = std::sin(value * value);
    std::vector<ozm::CChartInfo> charts{chartOf({})};
    for (const auto style : {ChartSeries::Style::Line, ChartSeries::Style::Step, ChartSeries::Style::Markers,
                             ChartSeries::Style::Histogram}) {
        for (const auto& [x, y] : std::vector<std::pair<std::vector<double>, std::vector<double>>>{
                 {{}, {}},
                 {{1}, {1}},
                 {{2, 2, 2}, {1, 2, 3}},
                 {{1, 2, 3}, {4, 4, 4}},
                 {{notANumber, 1, infinite, 2, 3}, {1, notANumber, 2, -infinite, 3}},
                 {{notANumber}, {notANumber}},
                 {{1e15, 2e15}, {1e-300, 2e-300}},
                 {{-1e308, 1e308}, {1e308, -1e308}},
                 {{1e199, -1e199}, {1, 2}},
                 {{3, 1, 2}, {1, 2, 3}},
                 {{1, 2, 3}, {1}},
                 {many, jumps}}) {
            charts.push_back(chartOf({series("a", x, y, style), series("b", x, y, style)}));
            charts.back().series[0].role = ChartSeries::Role::LowerBound;
            charts.back().series[1].role = ChartSeries::Role::UpperBound;
        }
    }
    charts.push_back(chartOf({}));
    for (int i = 0; i < 200; ++i) {
        charts.back().series.push_back(
            series(std::string(100, 'w') + std::to_string(i), {0, 1}, {0, 1.0 * i}));
        charts.back().series.back().group = -i;
    }
    charts.push_back(chartOf(
        {series(test::awkwardText, {0, 1}, {0, 1}), series(std::string(100000, 'm'), {0, 1}, {1, 0})}));
    charts.back().title = std::string(100000, 'm') + test::awkwardText;
    charts.back().xAxis = {test::awkwardText, -1e300, 1e300};
    charts.back().yAxis = {std::string(5000, ' '), 5.0, std::nextafter(5.0, 6.0)};
    for (std::size_t i = 0; i < charts.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_LE(drawSvg(charts[i]).farthest, 1000.0);
        const auto format = i % 2 == 0 ? PictureFormat::Png : PictureFormat::Pdf;
        EXPECT_TRUE(renderChart(charts[i], format).drawn());
    }
}

TEST(ChartRenderer, APictureIsTheSameWhateverFontsAreInstalled) {
    // Read when a process first draws, so this tells only where each picture has a process of its own.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto differing = [] {
        int count = QCoreApplication::instance() == nullptr ? 0 : 10;
        for (const auto format : {PictureFormat::Svg, PictureFormat::Png}) {
            const Picture picture = drawChart(test::stepChart(), format);
            setenv("FONTCONFIG_FILE", "/dev/null", 1); // no fonts
            const Picture without = drawChart(test::stepChart(), format);
            unsetenv("FONTCONFIG_FILE");
            if (!picture.drawn() || picture.bytes != without.bytes) ++count;
        }
        return count;
    };
    EXPECT_EXIT(std::exit(differing()), testing::ExitedWithCode(0), "");
}

TEST(ChartRenderer, AnSvgBringsTheLettersOfItsTexts) {
    ozm::CChartInfo info = test::stepChart();
    const auto sizeOf = [&info] { return renderChart(info, PictureFormat::Svg).bytes.size(); };
    const auto svg = QByteArray::fromStdString(renderChart(info, PictureFormat::Svg).bytes);
    EXPECT_EQ(svg.count("@font-face{font-family:'DejaVu Sans';"), 2); // plain and bold
    EXPECT_EQ(svg.count("src:url(data:font/ttf;base64,AAEAAA"), 2);
    EXPECT_EQ(svg.count("\"DejaVu Sans\""), 0); // always with others behind
    const std::size_t before = sizeOf();
    EXPECT_LT(before, 50'000U);
    info.xAxis.title += " abcdefghijklmnopqrstuvwxyz \xCE\xB1\xCE\xB2\xCE\xB3";
    EXPECT_GT(sizeOf(), before + 1000);
    EXPECT_LT(sizeOf(), before + 20'000);
}

TEST(ChartApplication, LeavesTheProgramAsItWas) {
    const std::string locale = std::setlocale(LC_ALL, nullptr);
    testing::internal::CaptureStderr();
    EXPECT_EQ(ensureChartApplication(), "");
    EXPECT_TRUE(renderChart(test::stepChart(), PictureFormat::Svg).drawn());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), locale);
    const QCoreApplication* application = QCoreApplication::instance();
    EXPECT_EQ(ensureChartApplication(), "");
    EXPECT_EQ(QCoreApplication::instance(), application);

    Picture elsewhere;
    std::thread([&elsewhere] { elsewhere = renderChart(test::stepChart(), PictureFormat::Svg); }).join();
    EXPECT_FALSE(elsewhere.drawn());
    EXPECT_NE(elsewhere.error.find("thread"), std::string::npos);
}

} // namespace
} // namespace korvana
