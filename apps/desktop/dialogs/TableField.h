#pragma once

#include "apps/desktop/dialogs/ControlField.h"

class QTreeWidget;

namespace korvana::desktop {

/// A list with columns, whose rows the dialog sets. One row may be selected; a double-click executes it, and
/// Delete presses the button that the template names.
class TableField : public ControlField {
public:
    TableField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    void showEntries(const ozm::ListRows& rows) override;
    [[nodiscard]] bool growsInHeight() const override { return true; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void askForRoom();
    void fitColumns();
    QTreeWidget* table_;
};

} // namespace korvana::desktop
