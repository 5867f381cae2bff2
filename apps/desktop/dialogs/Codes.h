#pragma once

#include "support/services/VariableService.h"

#include <QString>

#include <optional>
#include <vector>

namespace ozm {
class CAnalysisSupport;
}

namespace korvana::desktop {

/// The codes that a variable offers.
struct CodeOffer {
    std::vector<ozm::CodeCount> codes; ///< ascending
    int more = 0;                      ///< distinct values beyond those
    bool failed = false;
};

/// Reads the data for the codes of a variable (from 1), and offers at most so many of them.
CodeOffer offeredCodes(ozm::CAnalysisSupport& analysis, int variable,
                       const ozm::DefaultCodeOptions& options = {});

/// The shortest text that reads back as the same number; empty for NaN.
QString codeText(double code);
/// With at most so many decimals, without trailing zeros; if that is too long, the text above.
QString codeText(double code, int decimals);
/// "1 = dead (128 cases)", with the text of the code.
QString offerText(const QString& text, const ozm::CodeCount& code);
/// The value label of a code, empty when it has none.
QString codeLabel(ozm::CAnalysisSupport& analysis, int variable, double code);

/// The code that a text stands for: a value label of the variable, or a number. Variable 0: only a number.
std::optional<double> codeOfText(ozm::CAnalysisSupport& analysis, int variable, const QString& text);
/// The message for a text that is no code.
QString noCode(const QString& text, int variable);

} // namespace korvana::desktop
