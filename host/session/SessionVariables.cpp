#include "host/session/SessionVariables.h"

#include "host/data/Codes.h"
#include "host/data/Describe.h"

#include <algorithm>
#include <cmath>
#include <exception>

namespace korvana {
namespace {

/// The values of the selected cells in the range asked for, ascending.
std::vector<double> sortedCells(const ActiveData& data, int variable0,
                                const ozm::DefaultCodeOptions& options) {
    const Variable& known = data.dataSet().variable(variable0);
    const auto cells = data.dataSet().column(variable0);
    const auto mask = data.mask();
    std::vector<double> kept;
    for (std::size_t i = 0; i < cells.size(); ++i)
        if ((mask.empty() || mask[i] != 0) && !known.isMissing(cells[i]) && cells[i] >= options.least &&
            cells[i] <= options.greatest)
            kept.push_back(cells[i]);
    std::sort(kept.begin(), kept.end());
    return kept;
}

} // namespace

short SessionVariables::getvn5(int variable, std::string& name) {
    name = exists(variable) ? data_.dataSet().variable(variable - 1).name : std::string{};
    return exists(variable) ? 0 : 1;
}

std::string SessionVariables::VariableLabel(int variable) {
    return exists(variable) ? data_.dataSet().variable(variable - 1).label : std::string{};
}

int SessionVariables::FindVariable(std::string_view name) {
    const auto found = data_.dataSet().find(name);
    return found ? *found + 1 : 0;
}

bool SessionVariables::HoldsTexts(int variable) {
    return exists(variable) && data_.dataSet().variable(variable - 1).kind == VariableKind::Text;
}

bool SessionVariables::HoldsDates(int variable) {
    return exists(variable) && data_.dataSet().variable(variable - 1).kind == VariableKind::Date;
}

int SessionVariables::vvlcod8(int variable, ozm::LabelLookup mode, std::string& text, double& value) {
    if (!exists(variable)) return 0;
    if (mode == ozm::LabelLookup::CodeOfText) {
        const auto code = resolveCode(data_.dataSet(), variable - 1, text);
        if (code) value = *code;
        return code ? 1 : 0;
    }
    const auto label = data_.dataSet().variable(variable - 1).labelOf(value);
    if (label) text = *label;
    return label ? 1 : 0;
}

int SessionVariables::ReadDataToGetDefaultCodes(int variable, const ozm::DefaultCodeOptions& options,
                                                std::vector<ozm::CodeCount>& codes) try {
    codes.clear();
    if (!exists(variable)) return -1;
    const int most = std::max(options.most, 0);
    if (std::isinf(options.least) && std::isinf(options.greatest)) {
        const DistinctValues few = distinctCodes(data_.dataSet(), variable - 1, data_.mask(), most);
        for (const DistinctValue& value : few.values)
            codes.push_back({value.value, value.label, value.count});
        if (!few.moreThanLimit) return static_cast<int>(codes.size());
        if (!options.countAll) return most + 1;
    }
    const std::vector<double> cells = sortedCells(data_, variable - 1, options);
    int distinct = 0;
    for (auto run = cells.begin(); run != cells.end(); ++distinct) {
        const auto end = std::find_if(run, cells.end(), [run](double cell) { return cell != *run; });
        if (distinct < most) {
            std::string label;
            double code = *run;
            vvlcod8(variable, ozm::LabelLookup::TextOfCode, label, code);
            codes.push_back({code, std::move(label), static_cast<int>(end - run)});
        }
        run = end;
    }
    return distinct;
} catch (const std::exception&) {
    codes.clear();
    return -1;
}

} // namespace korvana
