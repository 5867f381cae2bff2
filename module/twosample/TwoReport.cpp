#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReportLines.h"
#include "module/survdata/StatusLine.h"
#include "module/twosample/TwoOutput.h"

#include <string>
#include <string_view>

namespace ozm::survival {
namespace {

/// Writes a text over the blanks of a line, ending at `end`.
void PutRightAligned(std::string& line, std::size_t end, std::string_view text) {
    const std::size_t from = text.size() > end + 1 ? 0 : end + 1 - text.size();
    line.replace(from, end + 1 - from, text);
}

/// Fills "Label:        (   .  %)        (   .  %)": a count before each parenthesis, and its percentage of
/// the group inside.
std::string FillCounts(int id, const PooledSample& sample, std::int32_t GroupCount::*counted) {
    std::string line{Text(id)};
    std::size_t open = 0;
    for (const GroupCount& group : sample.groups) {
        open = line.find('(', open + 1);
        PutRightAligned(line, open - 2, FormatCount(group.*counted));
        PutRightAligned(line, line.find('%', open) - 1,
                        FormatFixed(100.0 * (group.*counted) / group.All(), 2));
    }
    return line;
}

std::string RightAligned(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::vector<std::string> VariableLines(CAnalysisSupport& host, const SharedSettings& shared,
                                       const PooledSample& sample) {
    const auto line = [](int id, const std::string& value) { return std::string{Text(id)} + value; };
    return {line(StrTwoVariable, TimesName(host, shared)),
            line(StrTwoCensoringVariable, VariableName(host, shared.First(ListCensoring))),
            line(StrTwoGroupingVariable, VariableName(host, shared.First(ListGrouping))),
            line(StrTwoValid, FormatCount(sample.Total().All())),
            line(StrTwoUncensored, FormatCount(sample.Total().uncensored)) + "    " +
                line(StrTwoCensored, FormatCount(sample.Total().censored))};
}

/// The rows with counts, their labels right-aligned so that the columns line up.
void AddCounts(std::vector<std::string>& lines, const PooledSample& sample, int uncensored, int censored) {
    lines.push_back(FillCounts(uncensored, sample, &GroupCount::uncensored));
    lines.push_back(RightAligned(FillCounts(censored, sample, &GroupCount::censored), lines.back().size()));
}

} // namespace

std::vector<std::string> TwoSummaryLines(CAnalysisSupport& host, const SharedSettings& shared,
                                         const PooledSample& sample) {
    std::vector<std::string> lines = VariableLines(host, shared, sample);
    lines.emplace_back();
    lines.emplace_back(Text(StrTwoBoxHeading));
    AddCounts(lines, sample, StrTwoBoxUncensored, StrTwoBoxCensored);
    return lines;
}

void WriteTwoHeader(CAnalysisSupport& host, const SharedSettings& shared, const PooledSample& sample) {
    const StatusLine status(host, StrPrinting);
    OpenReport(host, shared, StrTwoTitle);
    std::vector<std::string> lines = VariableLines(host, shared, sample);
    lines.emplace_back();
    std::vector<std::string> shares;
    AddCounts(shares, sample, StrTwoGroupUncensored, StrTwoGroupCensored);
    // Headings and totals end where the percentages of their group do.
    const std::size_t first = shares.front().find(')') + 1;
    const std::size_t second = shares.front().size();
    const auto row = [&](int label, const std::string& one, const std::string& two) {
        std::string line = label == 0 ? std::string{} : std::string{Text(label)};
        line += RightAligned(one, first - line.size());
        return line + RightAligned(two, second - line.size());
    };
    lines.push_back(row(0, std::string{Text(StrTwoGroup1)}, std::string{Text(StrTwoGroup2)}));
    lines.push_back(
        row(StrTwoGroupValid, FormatCount(sample.Group(1).All()), FormatCount(sample.Group(2).All())));
    lines.insert(lines.end(), shares.begin(), shares.end());
    for (const std::string& line : lines)
        WriteLine(host, line);
    host.newline(1);
    WriteInputHeader(host, shared);
    host.type();
}

} // namespace ozm::survival
