#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace ozm {

/// Direction of a value-label lookup.
enum class LabelLookup : int {
    CodeOfText = 0, ///< text is read, value is written
    TextOfCode = 1, ///< value is read, text is written
};

/// One distinct value of a variable.
struct CodeCount {
    double code = 0.0;
    std::string text; ///< its value label, empty when it has none
    int cases = 0;    ///< selected cases that have it
};

/// Which cases `ReadDataToGetDefaultCodes` looks at, and how many codes it gathers.
struct DefaultCodeOptions {
    int most = 100;
    bool countAll = true; ///< false: stops counting at one more than the limit, which is faster
    /// Codes outside these limits are skipped.
    double least = -std::numeric_limits<double>::infinity();
    double greatest = std::numeric_limits<double>::infinity();
};

/// The variables of the active data set, numbered from 1.
class VariableService {
public:
    virtual ~VariableService() = default;

    virtual int NumberOfVariables() = 0;

    /// The variable's name. Returns 0, or non-zero for a number out of range (the name is then empty).
    virtual short getvn5(int variable, std::string& name) = 0;

    /// The variable's descriptive label, empty when it has none.
    virtual std::string VariableLabel(int variable) = 0;

    /// The number of the variable of that name (or of that number in digits), 0 when there is none.
    virtual int FindVariable(std::string_view name) = 0;

    /// Whether the variable's values are texts, so that its codes measure nothing.
    virtual bool HoldsTexts(int /*variable*/) { return false; }
    /// Whether the variable's values are dates: numbers of days.
    virtual bool HoldsDates(int /*variable*/) { return false; }

    /// Value-label lookup: the code that belongs to a text, or the text of a code. Returns 1 when found, else
    /// 0 (the output is then unchanged).
    virtual int vvlcod8(int variable, LabelLookup mode, std::string& text, double& value) = 0;

    /// The distinct values of a variable among the selected cases, ascending, missing data left out. Returns
    /// how many the variable has in all, which may be more than were gathered; below 0 on failure.
    virtual int ReadDataToGetDefaultCodes(int variable, const DefaultCodeOptions& options,
                                          std::vector<CodeCount>& codes) = 0;
};

} // namespace ozm
