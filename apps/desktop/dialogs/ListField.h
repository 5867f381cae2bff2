#pragma once

#include "apps/desktop/dialogs/ControlField.h"

class QListWidget;

namespace korvana::desktop {

/// A list of entries, one of them selected; a double-click executes it. An entry without a text is a
/// separator and cannot be selected.
class ListField : public ControlField {
public:
    ListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);
    void showValue(const ozm::ControlValue& value) override;
    [[nodiscard]] bool growsInHeight() const override { return true; }

private:
    void fill();
    QListWidget* list_;
};

} // namespace korvana::desktop
