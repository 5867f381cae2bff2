#pragma once

#include "module/groups/GroupCurves.h"
#include "module/ksample/KsState.h"
#include "module/survdata/OutputResult.h"
#include "support/CAnalysisSupport.h"

#include <string>
#include <vector>

namespace ozm::survival {

/// A run's results as its outputs need them.
struct KsReportOf {
    CAnalysisSupport& host;
    const NamedGroups& groups;
    const KsResults& results;
};

/// The lines of the results dialog's box: variables, counts, the test.
std::vector<std::string> KsSummaryLines(const KsReportOf& of);
/// "Chi-square = 19.4405 df = 3 p = ..." into the blanks of a text of the string table.
std::string KsTestLine(const KSampleStatistic& test, int textOfTwo, int textOfMore);

/// The report's block with these lines and the input.
void WriteKsHeader(const KsReportOf& of);

/// That block, the statistics of the groups, the test.
OutputResult WriteKsSummary(const KsReportOf& of);
OutputResult WriteKsScores(const KsReportOf& of);
OutputResult WriteKsDescriptive(const KsReportOf& of);
OutputResult PlotKsHistogram(const KsReportOf& of);
/// Product-limit estimates of the groups as a table and as curves.
OutputResult WriteKsCurves(const KsReportOf& of);
/// One life table per group.
OutputResult WriteKsLifeTables(const KsReportOf& of);
/// The log-rank test and its relatives, and what they rest on by group, with median survival times.
OutputResult WriteLogRankTests(const KsReportOf& of);
OutputResult WritePairTests(const KsReportOf& of);

} // namespace ozm::survival
