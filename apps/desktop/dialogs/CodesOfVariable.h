#pragma once

#include "apps/desktop/dialogs/Codes.h"
#include "apps/desktop/dialogs/ControlField.h"

namespace korvana::desktop {

/// A field for codes of the variable that another field of the dialog holds.
class CodesOfVariable : public ControlField {
public:
    using ControlField::ControlField;
    void offerCodesOf(int variable, const QString& prompt) final {
        prompt_ = prompt;
        if (variable == variable_) return;
        variable_ = variable;
        dataChanged();
    }
    [[nodiscard]] bool wantsCaption() const override { return true; }

protected:
    /// The variable, from 1; 0: none is chosen yet.
    [[nodiscard]] int variable() const { return variable_; }
    /// What there is to do before codes can be offered.
    [[nodiscard]] QString chooseFirst() const {
        return prompt_.isEmpty() ? QStringLiteral("Choose the variable first")
                                 : QStringLiteral("Choose '%1' first").arg(prompt_);
    }
    /// The value label of a code, empty when it has none.
    [[nodiscard]] QString labelOf(double code) const {
        ozm::CAnalysisSupport* analysis = host().analysis();
        return analysis != nullptr ? codeLabel(*analysis, variable_, code) : QString{};
    }

private:
    QString prompt_;
    int variable_ = 0;
};

} // namespace korvana::desktop
