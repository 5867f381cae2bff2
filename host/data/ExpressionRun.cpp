#include "host/data/ExpressionRun.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace korvana {
namespace {

constexpr double none = std::numeric_limits<double>::quiet_NaN();

/// Whether a term of some value is not 0. In so many sums that they need not wait for each other.
template <class Term>
bool anyNotZero(const double* values, std::size_t cases, Term term) {
    constexpr std::size_t lanes = 16;
    std::array<double, lanes> sums{};
    std::size_t i = 0;
    for (; i + lanes <= cases; i += lanes)
        for (std::size_t k = 0; k < lanes; ++k)
            sums[k] += term(values[i + k]);
    for (; i < cases; ++i)
        sums[0] += term(values[i]);
    return !std::ranges::all_of(sums, [](double sum) { return sum == 0; });
}

/// Whether a value is not finite, or equals the code.
bool hasSpecial(const double* values, std::size_t cases, double code) {
    if (std::isnan(code)) return anyNotZero(values, cases, zeroIfFinite);
    return anyNotZero(values, cases,
                      [code](double value) { return zeroIfFinite(value) + (value == code ? 1.0 : 0.0); });
}

/// Whether the result is finite only if every input is.
bool isStrict(const ExpressionProgram& program) {
    const auto decidesAlone = [](const ExpressionProgram::Step& step) {
        const auto* const operation = step.operation;
        return operation == &operationOr || operation == &operationAnd || operation == &operationIf ||
               operation == &operationMissing;
    };
    return std::ranges::none_of(program.steps, decidesAlone);
}

/// Puts what is finite into the results, where it may be already, and NaN for the rest; returns how many of
/// these there are.
int keepFinite(const double* values, std::span<double> results) {
    if (values != results.data()) std::copy_n(values, results.size(), results.begin());
    if (!hasSpecial(results.data(), results.size(), none)) return 0;
    int failures = 0;
    for (double& result : results) {
        if (std::isfinite(result)) continue;
        result = none;
        ++failures;
    }
    return failures;
}

} // namespace

ExpressionRun::ExpressionRun(ExpressionProgram program, std::vector<bool> tested)
    : program_(std::move(program)), strict_(isStrict(program_)), tested_(std::move(tested)),
      inputs_(tested_.size()), cleaned_(tested_.size()), slots_(new double[program_.slots * most]) {
    incomplete_.reserve(tested_.size());
    stack_.reserve(program_.depth);
}

ExpressionRun::Values ExpressionRun::take(std::size_t input, const Expression::Input& from, std::size_t begin,
                                          std::size_t cases) {
    const bool single = from.step == 0;
    const double* first = from.first + (single ? 0 : begin);
    const std::size_t count = single ? 1 : cases;
    if (strict_ && std::isnan(from.missingCode)) return {first, single};
    if (!hasSpecial(first, count, from.missingCode)) return {first, single};
    std::vector<double>& cleaned = cleaned_[input];
    cleaned.resize(most);
    std::transform(first, first + count, cleaned.begin(),
                   [&from](double value) { return value == from.missingCode ? none : value; });
    if (!tested_[input]) incomplete_.push_back(input);
    return {cleaned.data(), single};
}

ExpressionRun::Values ExpressionRun::compute(std::span<double> results) {
    using Kind = ExpressionProgram::Step::Kind;
    const std::size_t cases = results.size();
    stack_.clear();
    for (const ExpressionProgram::Step& step : program_.steps) {
        if (step.kind != Kind::Operation) {
            stack_.push_back(step.kind == Kind::Input ? inputs_[step.place]
                                                      : Values{&program_.constants[step.place], true});
            continue;
        }
        const auto arguments = static_cast<std::size_t>(step.operation->arguments);
        const Values* taken = stack_.data() + stack_.size() - arguments;
        const bool single = std::all_of(taken, taken + arguments, [](const Values& v) { return v.single; });
        std::array<const double*, mostOperationArguments> in{};
        for (std::size_t k = 0; k < arguments; ++k) {
            in[k] = taken[k].first;
            if (single || !taken[k].single) continue;
            std::fill_n(spread_[k].begin(), cases, *taken[k].first);
            in[k] = spread_[k].data();
        }
        const bool last = &step == &program_.steps.back();
        double* const out = last ? results.data() : slots_.get() + step.place * most;
        step.operation->run(in.data(), out, single ? 1 : cases);
        stack_.resize(stack_.size() - arguments, Values{});
        stack_.push_back({out, single});
    }
    return stack_.back();
}

int ExpressionRun::operator()(std::span<const Expression::Input> inputs, std::span<double> results) {
    int failures = 0;
    for (std::size_t begin = 0; begin < results.size(); begin += most) {
        const auto part = results.subspan(begin, std::min(most, results.size() - begin));
        incomplete_.clear();
        for (std::size_t k = 0; k < inputs.size(); ++k)
            inputs_[k] = take(k, inputs[k], begin, part.size());
        Values values = compute(part);
        if (values.single) {
            std::fill_n(spread_[0].begin(), part.size(), *values.first);
            values.first = spread_[0].data();
        }
        for (const std::size_t k : incomplete_) {
            // A copy, as the values may be those of another input.
            std::copy_n(values.first, part.size(), spread_[1].begin());
            for (std::size_t i = 0; i < part.size(); ++i)
                if (std::isnan(inputs_[k].first[inputs_[k].single ? 0 : i])) spread_[1][i] = none;
            values.first = spread_[1].data();
        }
        failures += keepFinite(values.first, part);
    }
    return failures;
}

} // namespace korvana
