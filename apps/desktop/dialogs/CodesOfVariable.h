#pragma once

#include "apps/desktop/dialogs/Codes.h"
#include "apps/desktop/dialogs/ControlField.h"

#include <optional>
#include <vector>

namespace korvana::desktop {

/// A field for codes of the variable that another field of the dialog holds.
///
/// A code is shown with the decimals of the control. If that rounds it and another code of the data would
/// look the same, or it is no code of the data, it is shown with all its digits. The kept value is never
/// rounded.
class CodesOfVariable : public ControlField {
public:
    using ControlField::ControlField;
    void offerCodesOf(int variable, const QString& prompt) final {
        prompt_ = prompt;
        if (variable == variable_) return;
        variable_ = variable;
        dataChanged();
    }
    void dataChanged() override { known_.reset(); }
    [[nodiscard]] bool wantsCaption() const override { return true; }

protected:
    /// The variable, from 1; 0: none is chosen yet.
    [[nodiscard]] int variable() const { return variable_; }
    /// What the user has to do before codes can be offered.
    [[nodiscard]] QString chooseFirst() const {
        return prompt_.isEmpty() ? QStringLiteral("Choose the variable first")
                                 : QStringLiteral("Choose '%1' first").arg(prompt_);
    }
    /// The value label of a code, empty when it has none.
    [[nodiscard]] QString labelOf(double code) const {
        ozm::CAnalysisSupport* analysis = host().analysis();
        return analysis != nullptr ? codeLabel(*analysis, variable_, code) : QString{};
    }
    /// How a code is shown; empty for NaN. Reads the data if the decimals round it.
    [[nodiscard]] QString textOf(double code);
    /// The code that a text stands for, which may be one with more digits that is shown by this text.
    [[nodiscard]] std::optional<double> codeOf(const QString& text);

private:
    /// The code with the decimals of the control.
    [[nodiscard]] QString roundedText(double code) const;

    /// The codes of the variable, none if there are more than a list offers; read when they are needed.
    std::optional<std::vector<double>> known_;
    QString prompt_;
    int variable_ = 0;
};

} // namespace korvana::desktop
