#include "module/ksample/KsOutput.h"
#include "module/resources/KSamples.h"
#include "module/resources/Resources.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <initializer_list>
#include <string>

namespace ozm::survival {
namespace {

/// Puts values into the blanks after the equals signs of a line, each where its blanks begin.
std::string FilledAfterEquals(int id, std::initializer_list<std::string> values) {
    std::string line{Text(id)};
    std::size_t at = 0;
    for (const std::string& value : values) {
        at = line.find('=', at);
        if (at == std::string::npos) break;
        at += 2;
        const std::size_t end = std::min(line.find_first_not_of(' ', at), line.size());
        const std::size_t blanks = end - std::min(at, end);
        // One blank stays before what follows.
        line.replace(at, std::min(blanks, value.size() + 1), value + " ");
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line;
}

} // namespace

std::string KsTestLine(const KSampleStatistic& test, int textOfTwo, int textOfMore) {
    const std::string statistic = FormatNumber(test.statistic, 7);
    const double printed = test.Printed();
    // The floor in full, as people write it.
    const std::string p = printed == 0.00001 ? FormatFixed(printed, 5) : FormatProbability(printed);
    return test.TwoGroups() ? FilledAfterEquals(textOfTwo, {statistic, p})
                            : FilledAfterEquals(textOfMore, {statistic, FormatCount(test.df), p});
}

std::vector<std::string> KsSummaryLines(const KsReportOf& of) {
    const auto line = [](int id, const std::string& value) { return std::string{Text(id)} + value; };
    const SharedSettings& shared = of.groups.shared;
    const GroupCount total = of.results.Sample().Total();
    return {line(StrKsVariable, TimesName(of.host, shared)),
            line(StrKsCensoringVariable, VariableName(of.host, shared.First(ListCensoring))),
            line(StrKsGroupingVariable, VariableName(of.host, shared.First(ListGrouping))) + "    " +
                FormatCount(static_cast<long long>(of.results.groups.size())) + " " +
                std::string{Text(StrKsGroups)},
            line(StrKsValid, FormatCount(total.All())),
            line(StrKsUncensored, FormatCount(total.uncensored)) + "    " +
                line(StrKsCensored, FormatCount(total.censored)),
            "",
            KsTestLine(of.results.test, StrKsTestTwo, StrKsTestMore)};
}

void WriteKsHeader(const KsReportOf& of) {
    OpenReport(of.host, of.groups.shared, StrKsTitle);
    for (const std::string& line : KsSummaryLines(of))
        WriteLine(of.host, line);
    of.host.newline(1);
    WriteInputHeader(of.host, of.groups.shared);
    of.host.type();
}

} // namespace ozm::survival
