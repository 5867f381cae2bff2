#include "module/kaplan/CurveThinning.h"
#include "module/resources/Kaplan.h"
#include "tests/module/AnalysisFixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <random>
#include <set>

namespace ozm::survival {
namespace {

struct Points {
    std::vector<double> x;
    std::vector<double> y;
};

/// Times of all kinds: continuous or tied, evenly spread, crowded at the start with a long tail, or all
/// equal.
std::vector<double> RandomTimes(std::mt19937& random, std::size_t count) {
    const double shape = std::array{0.2, 1.0, 6.0}[random() % 3];
    const double scale = std::array{1e-9, 1.0, 365.25, 1e15}[random() % 4];
    const double ties = std::array{0.0, 7.0, 1000.0}[random() % 3];
    const bool equal = random() % 8 == 0;
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    std::vector<double> times(count);
    for (double& time : times) {
        const double share = equal ? 1.0 : std::pow(uniform(random), shape);
        time = scale * (ties > 0.0 ? std::floor(share * ties) / ties : share);
    }
    std::sort(times.begin(), times.end());
    return times;
}

/// The fields of a page that a step function covers.
std::vector<bool> Covered(const CurvePage& page, const Points& steps) {
    std::vector<bool> fields(static_cast<std::size_t>(page.columns) * static_cast<std::size_t>(page.rows));
    const auto cover = [&](int column, int row) {
        fields[static_cast<std::size_t>(column) * static_cast<std::size_t>(page.rows) +
               static_cast<std::size_t>(row)] = true;
    };
    for (std::size_t i = 0; i < steps.x.size(); ++i) {
        const int column = page.Column(steps.x[i]);
        const int before = page.Row(steps.y[i == 0 ? 0 : i - 1]);
        const int row = page.Row(steps.y[i]);
        for (int c = i == 0 ? column : page.Column(steps.x[i - 1]); c < column; ++c)
            cover(c, before);
        for (int r = std::min(before, row); r <= std::max(before, row); ++r)
            cover(column, r);
    }
    return fields;
}

TEST(CurveThinning, StepsCoverTheSameFieldsOfThePage) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (int round = 0; round < 100; ++round) {
        const std::size_t count = std::array<std::size_t, 4>{1, 30, 2000, 20000}[random() % 4];
        const bool falling = random() % 2 == 0;
        Points all{RandomTimes(random, count), {}};
        double y = 1.0;
        for (std::size_t i = 0; i < count; ++i) {
            // An estimate falls; a limit may go up again, here by much.
            y = falling ? y * static_cast<double>(count - i - 1) / static_cast<double>(count - i)
                        : std::clamp(y + 0.2 * (uniform(random) - 0.5), 0.0, 1.0);
            all.y.push_back(y);
        }
        const CurvePage page{all.x.back(), std::array{7, 300, 2000}[random() % 3], 250};
        ThinnedSteps thinned(page);
        for (std::size_t i = 0; i < count; ++i)
            thinned.Add(all.x[i], all.y[i]);
        thinned.Close();
        ASSERT_LE(thinned.x.size(), static_cast<std::size_t>(3 * page.columns));
        ASSERT_TRUE(std::is_sorted(thinned.x.begin(), thinned.x.end()));
        EXPECT_EQ(thinned.x.back(), all.x.back());
        EXPECT_EQ(thinned.y.back(), all.y.back());
        EXPECT_TRUE(Covered(page, all) == Covered(page, {thinned.x, thinned.y}))
            << "round " << round << ", " << count << " points";

        // Marks on a falling curve fall into the same fields, one into each.
        if (!falling) continue;
        ThinnedMarks marks(page);
        std::set<std::pair<int, int>> fields;
        for (std::size_t i = 0; i < count; ++i) {
            marks.Add(all.x[i], all.y[i]);
            fields.emplace(page.Column(all.x[i]), page.Row(all.y[i]));
        }
        std::set<std::pair<int, int>> kept;
        for (std::size_t i = 0; i < marks.x.size(); ++i)
            EXPECT_TRUE(kept.emplace(page.Column(marks.x[i]), page.Row(marks.y[i])).second);
        EXPECT_TRUE(kept == fields) << "round " << round;
    }
}

TEST(CurveThinning, GatheredTimesCountExactlyAtTheTicksOfAnAxis) {
    std::mt19937 random(2);
    for (int round = 0; round < 40; ++round) {
        const std::vector<double> times =
            RandomTimes(random, std::array<std::size_t, 2>{50, 20000}[random() % 2]);
        GatheredTimes gathered(times.back());
        for (const double time : times)
            gathered.Add(time);
        EXPECT_LE(gathered.times.size(), 10001U);
        if (gathered.Step() == 0.0) continue;
        const double magnitude = std::pow(10.0, std::floor(std::log10(times.back() / 5)));
        for (const double mantissa : {1.0, 2.0, 2.5, 5.0})
            for (double k = 0; k * mantissa * magnitude <= times.back(); ++k) {
                const double tick = k * mantissa * magnitude;
                const auto fromTick = [tick](double time) { return time >= tick - 1e-12 * tick; };
                double still = 0.0;
                for (std::size_t i = 0; i < gathered.times.size(); ++i)
                    still += fromTick(gathered.times[i]) ? gathered.counts[i] : 0.0;
                EXPECT_EQ(still, static_cast<double>(std::count_if(times.begin(), times.end(), fromTick)))
                    << tick << " of " << times.back();
            }
    }
}

using test::KaplanFixture;

TEST_F(KaplanFixture, TheCurveOfAFewIsThatOfPlotOne) {
    ManyCases(20000);
    for (std::size_t i = 0; i < 20000; ++i)
        host.columns[0].values[i] = static_cast<double>(i);
    Run();
    host.Script().Call("PlotOfSurvivalTimesVsCumProportionSurviving");
    EXPECT_TRUE(host.Script().Call("SurvivalCurve").ok);
    ASSERT_EQ(host.charts.size(), 2U);
    EXPECT_EQ(host.charts[1].title, "Survival Curve");
    EXPECT_TRUE(host.charts[1].notes.empty());
    for (std::size_t k = 0; k < 4; ++k) {
        const ChartSeries& plot = host.charts[0].series[k];
        const ChartSeries& curve = host.charts[1].series[k];
        EXPECT_EQ(curve.legend, plot.legend);
        EXPECT_EQ(curve.x, plot.x);
        EXPECT_EQ(curve.y, plot.y);
        EXPECT_EQ(curve.leaving, plot.leaving);
    }
}

TEST_F(KaplanFixture, TheCurveOfManyShowsAllOfThemAndThePlotsSayWhatTheyDoNot) {
    constexpr int cases = 50000;
    ManyCases(cases);
    std::mt19937 random(3);
    for (double& time : host.columns[0].values)
        time = -std::log(static_cast<double>(random() % 100000 + 1) / 100001.0);
    Run();
    AutomationObject results = host.Script();
    EXPECT_NE(
        std::get<std::string>(host.Dialog().Value(KaplanSummaryBox)).find("the first 32000 observations"),
        std::string::npos);
    EXPECT_EQ(results.Get("DefaultPlot").value, AutomationValue{"SurvivalCurve"});
    EXPECT_FALSE(results.Put("DefaultPlot", "Summary").ok);
    results.Call("SurvivalCurve");
    EXPECT_TRUE(host.messages.empty());
    results.Call("PlotOfSurvivalTimesVsCumProportionSurviving");
    EXPECT_EQ(host.messages.back().text, "Only the first 32000 cases will be plotted.");
    results.Call("PlotOfLogSurvivalTimesVsCumProportionSurviving");
    ASSERT_EQ(host.charts.size(), 3U);
    const KaplanResults& r = State().results;
    const ChartSeries& first = host.charts[1].series[0];
    const auto among = [last = first.x.back()](std::span<const double> all) {
        return std::upper_bound(all.begin(), all.end(), last) - all.begin();
    };
    EXPECT_EQ(first.x.size(),
              static_cast<std::size_t>(among(r.UncensoredTimes())) + 2); // start and end of the curve
    EXPECT_EQ(first.staying, cases - 32000);
    EXPECT_EQ(host.charts[0].notes,
              std::vector<std::string>{
                  "All 50000 observations are drawn, those that a page cannot tell apart as one."});
    for (const std::size_t plot : {1U, 2U})
        EXPECT_EQ(host.charts[plot].notes,
                  std::vector<std::string>{"Only the first 32000 of 50000 observations in order of time are "
                                           "drawn; the survival curve draws all."});
    const ChartSeries& curve = host.charts[0].series[0];
    EXPECT_EQ(curve.x.back(), std::max(r.UncensoredTimes().back(), r.CensoredTimes().back()));
    EXPECT_LT(curve.x.size(), 10000U);
    // Each point is on the estimate.
    for (std::size_t i = 1; i < curve.x.size(); ++i) {
        const auto after =
            std::upper_bound(r.UncensoredTimes().begin(), r.UncensoredTimes().end(), curve.x[i]);
        const auto place = static_cast<std::size_t>(after - r.UncensoredTimes().begin());
        EXPECT_EQ(curve.y[i], r.Survival()[place - 1]) << curve.x[i];
    }
    EXPECT_EQ(std::accumulate(curve.leavingCounts.begin(), curve.leavingCounts.end(), 0.0), cases);
}

TEST_F(KaplanFixture, ACurveMayBeStoppedAndNeedsNoExtent) {
    constexpr int cases = 40000; // more than plots draw
    ManyCases(cases);
    std::ranges::fill(host.columns[0].values, 0.0);
    Run();
    host.stopAt = host.questions + 1;
    host.Dialog().Press(KaplanCurve);
    EXPECT_TRUE(host.charts.empty() && host.messages.empty());
    host.stopAt = 0;
    host.Dialog().Press(KaplanCurve);
    ASSERT_EQ(host.charts.size(), 1U);
    EXPECT_EQ(host.charts[0].series[0].leavingCounts, std::vector<double>{cases});
}

} // namespace
} // namespace ozm::survival
