#pragma once

#include "apps/desktop/dialogs/CodesOfVariable.h"

#include <vector>

class QLineEdit;
class QToolButton;

namespace korvana::desktop {

/// Several codes of a variable: typed with commas between them (numbers or value labels, those with a comma
/// in quotes), or checked in a list of those in the data.
class CodeListField : public CodesOfVariable {
public:
    CodeListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool hasPendingEdit() const override;
    bool commit() override;
    void dataChanged() override;

private:
    void showCodes();
    void openList();

    QLineEdit* line_;
    QToolButton* open_;
    std::vector<double> codes_;
};

} // namespace korvana::desktop
