#include "apps/desktop/dialogs/CodesOfVariable.h"

#include "apps/desktop/WaitCursor.h"
#include "support/CAnalysisSupport.h"

#include <algorithm>

namespace korvana::desktop {
namespace {

/// The codes of a variable, none if there are too many to be listed or they cannot be read.
std::vector<double> listedCodes(ozm::CAnalysisSupport& analysis, int variable) {
    const WaitCursor cursor;
    std::vector<ozm::CodeCount> counts;
    const int distinct = analysis.ReadDataToGetDefaultCodes(variable, {.countAll = false}, counts);
    std::vector<double> codes;
    if (distinct == std::ssize(counts))
        for (const ozm::CodeCount& count : counts)
            codes.push_back(count.code);
    return codes;
}

} // namespace

QString CodesOfVariable::roundedText(double code) const {
    return codeText(code, host().decimals(*this, code));
}

QString CodesOfVariable::textOf(double code) {
    const QString rounded = roundedText(code);
    ozm::CAnalysisSupport* analysis = host().analysis();
    if (rounded.isEmpty() || rounded.toDouble() == code) return rounded;
    if (!known_ && analysis != nullptr && variable_ != 0) known_ = listedCodes(*analysis, variable_);
    if (!known_ || std::find(known_->begin(), known_->end(), code) == known_->end()) return codeText(code);
    const auto alike = std::count_if(known_->begin(), known_->end(),
                                     [&](double other) { return roundedText(other) == rounded; });
    return alike == 1 ? rounded : codeText(code);
}

std::optional<double> CodesOfVariable::codeOf(const QString& text) {
    ozm::CAnalysisSupport* analysis = host().analysis();
    if (analysis == nullptr) return std::nullopt;
    const std::optional<double> code = codeOfText(*analysis, variable_, text);
    // Without `known_`, no shortened text was ever shown.
    if (!code || !known_ || std::find(known_->begin(), known_->end(), *code) != known_->end()) return code;
    const auto shown = std::find_if(known_->begin(), known_->end(),
                                    [&](double known) { return textOf(known) == text.trimmed(); });
    return shown != known_->end() ? *shown : code;
}

} // namespace korvana::desktop
