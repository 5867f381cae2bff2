#pragma once

#include "apps/desktop/dialogs/ControlField.h"

class QLineEdit;
class QToolButton;

namespace korvana::desktop {

class ElidedLabel;

/// A line of text: a text, or a number with decimals (with a decimal point in any language, as in files and
/// on the command line). A proportion may be given in percent, and a note then says how it was understood.
class LineField : public ControlField {
public:
    LineField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool hasPendingEdit() const override;
    bool commit() override;
    [[nodiscard]] bool wantsCaption() const override { return true; }
    [[nodiscard]] bool growsInWidth() const override {
        return control().kind == ozm::ControlKind::Text || control().isShare;
    }

private:
    void putBeside(QWidget* other, int stretch);
    QToolButton* namesButton();
    bool commitNumber();
    void complainOfLength();
    QLineEdit* line_;
    ElidedLabel* note_ = nullptr; ///< of a proportion given in percent
};

} // namespace korvana::desktop
