#pragma once

#include "support/Export.h"

#include <span>
#include <string>

namespace ozm {

/// What `cstart` returns.
enum CaseAnswer : short {
    UseCase = 0,     ///< the values are in the buffer
    SkipCase = 1,    ///< excluded by the selection conditions; the buffer is unchanged
    StopReading = 2, ///< no such case, or reading cannot go on
};

/// The cases of the active data set. Cases and variables are numbered from 1.
class KORVANA_SUPPORT DataService {
public:
    virtual ~DataService() = default;

    /// Fetches one case with the selection conditions applied: values[k] becomes the value of variables[k]
    /// (both spans equally long; a cell without a value, or with the variable's missing-data code, gives a
    /// NaN). Called once per case of a reading pass, so an implementation must neither allocate nor look
    /// names up.
    virtual short cstart(int caseNumber, std::span<double> values, std::span<const int> variables) = 0;

    /// As `cstart`, for many cases at a time, which saves a call for each: answers[i] and the values
    /// values[k * answers.size() + i] of variables[k] are those of the case firstCase + i; `values` has a
    /// place for each. The values of a case that is not to be used are undefined. After a StopReading all
    /// further answers are the same. Asks `cstart` unless a service has a faster way.
    virtual void cstarts(int firstCase, std::span<short> answers, std::span<double> values,
                         std::span<const int> variables);

    /// Number of cases of the data set, selected or not.
    virtual int ss_nb() = 0;

    /// The missing-data code of a variable; NaN when it has none, or one beyond single precision (`cstart`
    /// respects it all the same). Returns 0, or non-zero for a number out of range (the code is then NaN).
    virtual short getmd5(int variable, double& missingCode) = 0;

    /// The variable whose values weight the cases, 0 while weighting is off.
    virtual int WeightVariable() = 0;

    /// The name of a case; empty when the data set names no cases.
    virtual std::string CaseName(int caseNumber) = 0;

    /// Name of the data file, without folders; empty when there is none.
    virtual std::string FileName() = 0;
};

} // namespace ozm
