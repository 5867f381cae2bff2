#include "module/resources/Resources.h"
#include "module/resources/Shared.h"
#include "module/resources/TwoSamples.h"
#include "module/survdata/InputHeader.h"
#include "module/survdata/ReportLines.h"
#include "module/twosample/TwoOutput.h"

#include <string>
#include <string_view>
#include <utility>

namespace ozm::survival {
namespace {

/// Puts a text over the blanks of a line, its last character at `end`.
void PutRightAligned(std::string& line, std::size_t end, std::string_view text) {
    const std::size_t from = text.size() > end + 1 ? 0 : end + 1 - text.size();
    line.replace(from, end + 1 - from, text);
}

/// Fills "Label:        (   .  %)        (   .  %)": a count before each parenthesis, its share of the group
/// within.
std::string FillCounts(int id, int count1, int of1, int count2, int of2) {
    std::string line{Text(id)};
    std::size_t open = 0;
    for (const auto& [count, of] : {std::pair{count1, of1}, std::pair{count2, of2}}) {
        open = line.find('(', open + 1);
        PutRightAligned(line, open - 2, FormatCount(count));
        PutRightAligned(line, line.find('%', open) - 1, FormatFixed(100.0 * count / of, 2));
    }
    return line;
}

std::string RightAligned(const std::string& text, std::size_t width) {
    return text.size() < width ? std::string(width - text.size(), ' ') + text : text;
}

std::vector<std::string> VariableLines(CAnalysisSupport& host, const SharedSettings& shared,
                                       const GroupCounts& counts) {
    const auto line = [](int id, const std::string& value) { return std::string{Text(id)} + value; };
    return {line(StrTwoVariable, TimesName(host, shared)),
            line(StrTwoCensoringVariable, VariableName(host, shared.First(ListCensoring))),
            line(StrTwoGroupingVariable, VariableName(host, shared.First(ListGrouping))),
            line(StrTwoValid, FormatCount(counts.N())),
            line(StrTwoUncensored, FormatCount(counts.Uncensored())) + "    " +
                line(StrTwoCensored, FormatCount(counts.Censored()))};
}

/// The rows with counts, their labels right-aligned so that the columns stand below each other.
void AddCounts(std::vector<std::string>& lines, const GroupCounts& n, int uncensored, int censored) {
    lines.push_back(FillCounts(uncensored, n.uncensored1, n.N1(), n.uncensored2, n.N2()));
    lines.push_back(
        RightAligned(FillCounts(censored, n.censored1, n.N1(), n.censored2, n.N2()), lines.back().size()));
}

} // namespace

std::vector<std::string> TwoSummaryLines(CAnalysisSupport& host, const SharedSettings& shared,
                                         const GroupCounts& counts) {
    std::vector<std::string> lines = VariableLines(host, shared, counts);
    lines.emplace_back();
    lines.emplace_back(Text(StrTwoBoxHeading));
    AddCounts(lines, counts, StrTwoBoxUncensored, StrTwoBoxCensored);
    return lines;
}

void WriteTwoHeader(CAnalysisSupport& host, const SharedSettings& shared, const GroupCounts& counts) {
    host.d_stat(Text(StrPrinting));
    OpenReport(host, shared, StrTwoTitle);
    std::vector<std::string> lines = VariableLines(host, shared, counts);
    lines.emplace_back();
    std::vector<std::string> shares;
    AddCounts(shares, counts, StrTwoGroupUncensored, StrTwoGroupCensored);
    // Headings and totals end where the shares of their group do.
    const std::size_t first = shares.front().find(')') + 1;
    const std::size_t second = shares.front().size();
    const auto row = [&](int label, const std::string& one, const std::string& two) {
        std::string line = label == 0 ? std::string{} : std::string{Text(label)};
        line += RightAligned(one, first - line.size());
        return line + RightAligned(two, second - line.size());
    };
    lines.push_back(row(0, std::string{Text(StrTwoGroup1)}, std::string{Text(StrTwoGroup2)}));
    lines.push_back(row(StrTwoGroupValid, FormatCount(counts.N1()), FormatCount(counts.N2())));
    lines.insert(lines.end(), shares.begin(), shares.end());
    for (const std::string& line : lines)
        WriteLine(host, line);
    host.newline(1);
    WriteInputHeader(host, shared);
    host.type();
    host.d_stat({});
}

} // namespace ozm::survival
