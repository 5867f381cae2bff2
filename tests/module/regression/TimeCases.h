#pragma once
// Covariates that depend on the time, for tests: functions of a case's variables and of the time.

#include "module/regression/timedependent/TimeCovariates.h"
#include "tests/module/regression/CoxCases.h"

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {

struct TimeFunction {
    std::string text;
    bool changes = true;
    std::function<double(const Values& v, double t)> value; ///< v: the variables of a case
};

/// Functions of the covariates of a sample, in its order.
class FunctionsOf final : public TimeCovariates {
public:
    FunctionsOf(const RegressionSample& sample, std::vector<TimeFunction> functions)
        : functions_(std::move(functions)), cases_(sample.Cases()) {
        for (std::size_t i = 0; i < sample.Cases(); ++i)
            for (std::size_t k = 0; k < sample.Covariates(); ++k)
                cases_[i].push_back(sample.Column(k)[i]);
    }
    [[nodiscard]] std::size_t Count() const override { return functions_.size(); }
    [[nodiscard]] bool DependsOnTime(std::size_t covariate) const override {
        return functions_[covariate].changes;
    }
    void Evaluate(std::size_t covariate, std::size_t first, double time, std::span<double> values) override {
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = functions_[covariate].value(cases_[first + i], time);
        computed += values.size();
    }
    std::size_t computed = 0; ///< values

private:
    std::vector<TimeFunction> functions_;
    std::vector<Values> cases_;
};

/// The expressions of the golden file.
inline TimeFunction TimeFunctionNamed(const std::string& text) {
    using V = const Values&;
    static const std::vector<TimeFunction> all = {
        {"rx", false, [](V v, double) { return v[0]; }},
        {"rx*(T_-10)", true, [](V v, double t) { return v[0] * (t - 10); }},
        {"rx*T_", true, [](V v, double t) { return v[0] * t; }},
        {"T_*rx", true, [](V v, double t) { return t * v[0]; }},
        {"trt", false, [](V v, double) { return v[0]; }},
        {"prior", false, [](V v, double) { return v[1]; }},
        {"karno", false, [](V v, double) { return v[2]; }},
        {"karno*log(T_+20)", true, [](V v, double t) { return v[2] * std::log(t + 20); }},
        {"a", false, [](V v, double) { return v[0]; }},
        {"b*T_", true, [](V v, double t) { return v[1] * t; }},
        {"a*b/(1+T_)", true, [](V v, double t) { return v[0] * v[1] / (1 + t); }},
        {"x1", false, [](V v, double) { return v[0]; }},
        {"x2*log(T_)", true, [](V v, double t) { return v[1] * std::log(t); }},
        {"x3*(T_>9)", true, [](V v, double t) { return v[2] * (t > 9 ? 1 : 0); }},
        {"x", false, [](V v, double) { return v[0]; }},
        {"y", false, [](V v, double) { return v[1]; }},
        {"x*T_", true, [](V v, double t) { return v[0] * t; }},
        {"1/(y-4)", false, [](V v, double) { return 1 / (v[1] - 4); }},
        {"y/(1+100*(T_-5)^2)", true, [](V v, double t) { return v[1] / (1 + 100 * (t - 5) * (t - 5)); }},
        {"x/((T_-5)^2+(y-16)^2)", true,
         [](V v, double t) { return v[0] / ((t - 5) * (t - 5) + (v[1] - 16) * (v[1] - 16)); }},
        {"sqrt(T_+1-y)", true, [](V v, double t) { return std::sqrt(t + 1 - v[1]); }},
        {"1/(T_-4)", true, [](V, double t) { return 1 / (t - 4); }},
        {"1/(T_-5)", true, [](V, double t) { return 1 / (t - 5); }}};
    for (const TimeFunction& each : all)
        if (each.text == text) return each;
    throw std::runtime_error("no function for " + text);
}

} // namespace ozm::survival
