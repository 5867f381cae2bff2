#pragma once

#include "module/regression/data/RegressionSample.h"
#include "module/regression/parametric/EstimateSteps.h"
#include "module/regression/parametric/Predictions.h"
#include "module/regression/results/FiniteCells.h"
#include "module/survdata/ResultTable.h"
#include "support/CChartInfo.h"

#include <string>
#include <vector>

namespace ozm::survival {

// What charts and tables of fitted survival functions have in common.

double LargestTime(const RegressionSample& sample);
std::vector<double> AscendingTimes(const RegressionSample& sample);
/// Times from 0 to the largest at which a curve through the survival looks smooth, however steep it is.
std::vector<double> CurveTimes(const Predictor& predictor, double largest);

ChartSeries FittedSeries(std::string legend, ChartSeries::Role role);

/// Adds a note where survival at time 0 is below 1 by what shows.
void AddNoteBelowZero(const Predictor& predictor, std::vector<std::string>& notes);

/// Columns of time, cases at risk and events.
class EventColumns {
public:
    explicit EventColumns(ResultTable& table);
    void Fill(ResultTable& table, std::size_t row, const EstimateStep& step) const;

private:
    ResultTable::Numbers time_;
    ResultTable::Integers atRisk_;
    ResultTable::Integers events_;
};

/// Columns of a fitted survival with its standard error and limits.
class FittedColumns {
public:
    FittedColumns(ResultTable& table, double level);
    void Fill(ResultTable& table, std::size_t row, const Prediction& survival);
    void AddNotes(ResultTable& table) const { cells_.AddNote(table); }

private:
    ResultTable::Numbers survival_;
    ResultTable::Numbers error_;
    ResultTable::Numbers lower_;
    ResultTable::Numbers upper_;
    FiniteCells cells_;
};

} // namespace ozm::survival
