#pragma once

#include "apps/desktop/dialogs/CodesOfVariable.h"

class QComboBox;
class QToolButton;

namespace korvana::desktop {

class ElidedLabel;
/// A code of a variable: typed as a number or a value label, or chosen from a list of those in the data. The
/// data are read only when the list is asked for, or a code has too many digits to be shown: they may have
/// millions of cases.
class CodeField : public CodesOfVariable {
public:
    CodeField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool hasPendingEdit() const override { return edited_; }
    bool commit() override;
    void dataChanged() override;
    /// Shows, beside this code, that it was filled in; NaN: beside none.
    void remarkFilled(double code);
    /// Offers to exchange the code with that of another field.
    void offerSwapWith(CodeField& other);
    /// Fills the list, if it does not hold the variable's codes already.
    void offer();

private:
    void clearOffer();
    void say(const QString& line);
    void showText();
    void swapWith(CodeField& other);

    QComboBox* combo_;
    ElidedLabel* label_; ///< the value label of the code
    QToolButton* swap_ = nullptr;
    double code_;
    double filled_;
    bool offered_ = false;
    bool edited_ = false;
};

} // namespace korvana::desktop
