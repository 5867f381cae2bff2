#include "module/lifetable/HazardRegression.h"

#include <cmath>

namespace ozm::survival {
namespace {

constexpr double largestIntercept = 600.0;
constexpr double largestLambda = 1e15;

bool OfLogHazard(Distribution family) {
    return family == Distribution::Gompertz || family == Distribution::Weibull;
}

double VarianceOfLogHazard(const LifeTable& table, std::size_t i) {
    return table.hazardVariance[i] / (table.hazard[i] * table.hazard[i]);
}

/// The regression's data: one entry per closed interval.
struct Data {
    std::size_t count = 0;
    IntervalColumn y{};
    IntervalColumn x{};
    IntervalColumn variance{};
    IntervalColumn weight{};
};

Data DataOf(const LifeTable& table, Distribution family, std::size_t weighting) {
    Data data;
    data.count = table.Closed();
    for (std::size_t i = 0; i < data.count; ++i) {
        const bool log = OfLogHazard(family);
        data.y[i] = log ? std::log(table.hazard[i]) : table.hazard[i];
        data.x[i] = family == Distribution::Weibull ? std::log(table.midpoint[i]) : table.midpoint[i];
        data.variance[i] = log ? VarianceOfLogHazard(table, i) : table.hazardVariance[i];
        data.weight[i] = weighting == 0   ? 1.0
                         : weighting == 1 ? 1.0 / data.variance[i]
                                          : table.exposed[i] * table.width[i];
    }
    return data;
}

struct Line {
    double intercept = 0.0;
    double slope = 0.0;
    double interceptVariance = 0.0;
    double slopeVariance = 0.0;
    double covariance = 0.0;
};

Line FitLine(const Data& data) {
    double sw = 0.0;
    double swx = 0.0;
    double swxx = 0.0;
    for (std::size_t i = 0; i < data.count; ++i) {
        sw += data.weight[i];
        swx += data.weight[i] * data.x[i];
        swxx += data.weight[i] * data.x[i] * data.x[i];
    }
    const double determinant = sw * swxx - swx * swx;
    Line line;
    for (std::size_t i = 0; i < data.count; ++i) {
        const double ofIntercept = data.weight[i] * (swxx - swx * data.x[i]) / determinant;
        const double ofSlope = data.weight[i] * (sw * data.x[i] - swx) / determinant;
        line.intercept += ofIntercept * data.y[i];
        line.slope += ofSlope * data.y[i];
        line.interceptVariance += ofIntercept * ofIntercept * data.variance[i];
        line.slopeVariance += ofSlope * ofSlope * data.variance[i];
        line.covariance += ofIntercept * ofSlope * data.variance[i];
    }
    return line;
}

void EstimateMean(const Data& data, DistributionFit& fit) {
    double sw = 0.0;
    double swy = 0.0;
    for (std::size_t i = 0; i < data.count; ++i) {
        sw += data.weight[i];
        swy += data.weight[i] * data.y[i];
    }
    fit.parameters.lambda = swy / sw;
    fit.lambdaVariance = 0.0;
    for (std::size_t i = 0; i < data.count; ++i) {
        const double share = data.weight[i] / sw;
        fit.lambdaVariance += share * share * data.variance[i];
    }
}

FitStop ToWeibull(const Line& line, DistributionFit& fit) {
    if (std::abs(line.intercept) > largestIntercept) return FitStop::LargeIntercept;
    const double gamma = 1.0 + line.slope;
    const double lambda = std::exp(line.intercept) / gamma;
    if (std::abs(lambda) > largestLambda) return FitStop::LargeLambda;
    const double square = lambda * lambda;
    fit.parameters = {lambda, gamma};
    fit.lambdaVariance = square * line.interceptVariance + square / (gamma * gamma) * line.slopeVariance -
                         2.0 * square / gamma * line.covariance;
    fit.gammaVariance = line.slopeVariance;
    fit.covariance = lambda * line.covariance - lambda * line.slopeVariance / gamma;
    return FitStop::None;
}

} // namespace

bool HasVariances(const LifeTable& table, std::size_t interval) {
    return !(table.hazardVariance[interval] <= 0.0) && !(VarianceOfLogHazard(table, interval) <= 0.0);
}

FitStop EstimateParameters(const LifeTable& table, Distribution family, std::size_t weighting,
                           DistributionFit& fit) {
    const Data data = DataOf(table, family, weighting);
    if (family == Distribution::Exponential) {
        EstimateMean(data, fit);
    } else {
        const Line line = FitLine(data);
        if (family == Distribution::Weibull) {
            if (const FitStop stop = ToWeibull(line, fit); stop != FitStop::None) return stop;
        } else {
            fit.parameters = {line.intercept, line.slope};
            fit.lambdaVariance = line.interceptVariance;
            fit.gammaVariance = line.slopeVariance;
            fit.covariance = line.covariance;
        }
    }
    fit.estimated = true;
    return FitStop::None;
}

} // namespace ozm::survival
