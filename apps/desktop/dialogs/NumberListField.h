#pragma once

#include "apps/desktop/dialogs/ControlField.h"

class QLineEdit;

namespace korvana::desktop {

/// Several numbers in a line, separated by blanks or commas and with decimal points.
class NumberListField : public ControlField {
public:
    NumberListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool hasPendingEdit() const override;
    bool commit() override;
    [[nodiscard]] bool wantsCaption() const override { return true; }

private:
    QLineEdit* line_;
};

} // namespace korvana::desktop
