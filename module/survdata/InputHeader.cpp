#include "module/survdata/InputHeader.h"

#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/survdata/ReportLines.h"
#include "support/CodeComparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {
namespace {

/// "<lead> <code> = <label> <role>": the label only where the variable has one.
void WriteCode(CAnalysisSupport& host, std::string_view lead, int variable, double code,
               std::string_view role) {
    std::string line{lead};
    const std::string field = FormatCode(code);
    if (!line.ends_with(' ') && !field.starts_with(' ')) line += ' ';
    line += field;
    // Digits that the field has no room for may be what tells two codes apart.
    if (std::isfinite(code) && !CodesEqual(std::strtod(field.c_str(), nullptr), code))
        line += " = " + FormatExact(code);
    std::string label;
    double value = code;
    if (std::isfinite(code) && variable != 0 &&
        host.vvlcod8(variable, LabelLookup::TextOfCode, label, value) != 0)
        line += " = " + label;
    if (!role.empty()) line.append(" ").append(role);
    WriteLine(host, line);
}

void WriteTimes(CAnalysisSupport& host, const SharedSettings& settings) {
    const auto times = settings.Times();
    if (times.size() <= 1) {
        WriteLine(host, std::string{Text(StrTimesVariable)} + " " +
                            VariableName(host, times.empty() ? 0 : times.front()));
        return;
    }
    static constexpr std::array six{StrStartMonth, StrStartDay, StrStartYear,
                                    StrEndMonth,   StrEndDay,   StrEndYear};
    static constexpr std::array two{StrStartDate, StrEndDate};
    const std::vector<int> labels = times.size() == 2 ? std::vector<int>{two.begin(), two.end()}
                                                      : std::vector<int>{six.begin(), six.end()};
    WriteLine(host, Text(StrTimesFromDates));
    WriteLine(host, Text(StrVariables));
    std::size_t width = 0;
    for (const int variable : times)
        width = std::max(width, VariableName(host, variable).size());
    for (std::size_t k = 0; k < times.size() && k < labels.size(); ++k) {
        std::string name = VariableName(host, times[k]);
        name.resize(width, ' ');
        WriteLine(host, "    " + name + "  " + std::string{Text(labels[k])});
    }
}

void WriteTableInput(CAnalysisSupport& host, const SharedSettings& settings) {
    WriteLine(host, Text(StrTableInput));
    WriteLine(host, Text(StrVariables));
    for (const SelectionListId list : {ListIntervalLimits, ListWithdrawn, ListDying})
        WriteLine(host, "    " + VariableName(host, settings.First(list)));
}

} // namespace

void OpenReport(CAnalysisSupport& host, const SharedSettings& settings, int title) {
    host.prttop();
    WriteLine(host, Text(title));
    WriteLine(host, settings.reportTitle);
    WriteLine(host, std::string{Text(StrDataFile)} + settings.fileName);
    host.newline(1);
}

std::string TimesName(CAnalysisSupport& host, const SharedSettings& settings) {
    const auto times = settings.Times();
    return times.size() == 1 ? VariableName(host, times.front()) : std::string{Text(StrDaysComputed)};
}

void WriteInputHeader(CAnalysisSupport& host, const SharedSettings& settings) {
    if (settings.analysisType == AnalysisType::LifeTables && settings.inputDataType == InputDataType::Table) {
        WriteTableInput(host, settings);
        return;
    }
    WriteTimes(host, settings);
    const int censoring = settings.First(ListCensoring);
    WriteLine(host, std::string{Text(StrCensoringVariable)} + " " + VariableName(host, censoring));
    const std::string lead{Text(StrCodes)};
    const std::string indent(lead.size(), ' ');
    WriteCode(host, lead, censoring, settings.completeCode, Text(StrCompleteObservations));
    WriteCode(host, indent, censoring, settings.censoredCode, Text(StrCensoredObservations));
    const bool twoSamples = settings.analysisType == AnalysisType::TwoSamples;
    if (!twoSamples && settings.analysisType != AnalysisType::MultipleSamples) return;
    const int grouping = settings.First(ListGrouping);
    WriteLine(host, std::string{Text(StrGroupVariable)} + " " + VariableName(host, grouping));
    static constexpr std::array names{StrGroup1, StrGroup2};
    for (std::size_t g = 0; g < settings.groupCodes.size(); ++g)
        WriteCode(host, indent, grouping, settings.groupCodes[g],
                  twoSamples && g < names.size() ? Text(names[g]) : std::string_view{});
}

} // namespace ozm::survival
