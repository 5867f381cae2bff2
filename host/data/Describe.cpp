#include "host/data/Describe.h"

#include "host/data/DayNumber.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

#include <algorithm>
#include <cstddef>
#include <stdexcept>
#include <utility>

namespace korvana {
namespace {

/// Counts distinct values, kept sorted, until there are more than the limit.
class DistinctCounter {
public:
    explicit DistinctCounter(int limit) : limit_(static_cast<std::size_t>(std::max(limit, 0))) {}

    void count(double value) {
        if (found_.moreThanLimit) return;
        auto& values = found_.values;
        if (last_ < values.size() && values[last_].value == value) {
            ++values[last_].count;
            return;
        }
        const auto place = std::lower_bound(values.begin(), values.end(), value,
                                            [](const DistinctValue& a, double b) { return a.value < b; });
        last_ = static_cast<std::size_t>(place - values.begin());
        if (place != values.end() && place->value == value) {
            ++place->count;
        } else if (values.size() == limit_) {
            values.clear();
            found_.moreThanLimit = true;
        } else {
            values.insert(place, {value, 1, {}});
        }
    }

    DistinctValues labelled(const Variable& variable) {
        for (DistinctValue& each : found_.values) {
            if (const auto label = variable.labelOf(each.value)) {
                each.label = *label;
            } else if (variable.kind == VariableKind::Date) {
                each.label = isoDateText(each.value);
            }
        }
        return std::move(found_);
    }

private:
    std::size_t limit_;
    std::size_t last_ = 0;
    DistinctValues found_;
};

} // namespace

struct VariableDescriber::State {
    const Variable& known;
    std::span<const double> cells;
    std::span<const std::uint8_t> mask;
    DistinctCounter counter;
    VariableSummary summary;
    std::size_t next = 0;
};

VariableDescriber::VariableDescriber(const DataSet& data, int variable, std::span<const std::uint8_t> mask,
                                     int limit)
    : state_(std::make_unique<State>(
          State{data.variable(variable), data.column(variable), mask, DistinctCounter(limit), {}})) {
    if (!mask.empty() && mask.size() != state_->cells.size())
        throw std::invalid_argument("a mask needs one entry per case");
}

VariableDescriber::VariableDescriber(VariableDescriber&&) noexcept = default;
VariableDescriber& VariableDescriber::operator=(VariableDescriber&&) noexcept = default;
VariableDescriber::~VariableDescriber() = default;

bool VariableDescriber::advance(std::size_t cases) {
    State& s = *state_;
    const std::size_t end = s.next + std::min(cases, s.cells.size() - s.next);
    for (; s.next < end; ++s.next) {
        if (!s.mask.empty() && s.mask[s.next] == 0) continue;
        const double value = s.cells[s.next] + 0.0; // no minus zero
        if (s.known.isMissing(value)) {
            ++s.summary.missingCount;
            continue;
        }
        if (s.summary.validCount++ == 0) s.summary.min = s.summary.max = value;
        s.summary.min = std::min(s.summary.min, value);
        s.summary.max = std::max(s.summary.max, value);
        s.counter.count(value);
    }
    return s.next < s.cells.size();
}

VariableSummary VariableDescriber::take() {
    state_->summary.distinct = state_->counter.labelled(state_->known);
    return std::move(state_->summary);
}

VariableSummary describeVariable(const DataSet& data, int variable, std::span<const std::uint8_t> mask,
                                 int limit) {
    VariableDescriber describer(data, variable, mask, limit);
    describer.advance(static_cast<std::size_t>(data.caseCount()));
    return describer.take();
}

DistinctValues distinctCodes(const DataSet& data, int variable, std::span<const std::uint8_t> mask,
                             int limit) {
    return describeVariable(data, variable, mask, limit).distinct;
}

namespace {

std::string codeText(const DistinctValue& code) {
    std::string text = numberText(code.value);
    if (!code.label.empty()) text += " '" + brief(code.label) + "'";
    return text + " (" + std::to_string(code.count) + (code.count == 1 ? " case)" : " cases)");
}

} // namespace

std::string codesText(const DistinctValues& codes, int limit) {
    if (codes.moreThanLimit) return "more than " + std::to_string(limit) + " values";
    if (codes.values.empty()) return "no values";
    std::string text;
    for (const DistinctValue& each : codes.values)
        text.append(text.empty() ? "" : ", ").append(codeText(each));
    return text;
}

std::string fewCodesText(const DataSet& data, int variable) {
    constexpr int most = 1000;
    constexpr std::size_t listed = 6;
    DistinctValues codes = distinctCodes(data, variable, {}, most);
    const std::size_t count = codes.values.size();
    if (codes.moreThanLimit || count <= listed) return codesText(codes, most);
    codes.values.resize(listed);
    return codesText(codes, most) + " and " + std::to_string(count - listed) + " other values";
}

} // namespace korvana
