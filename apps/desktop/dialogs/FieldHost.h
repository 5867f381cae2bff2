#pragma once

#include "support/dialogs/ControlValue.h"

class QString;
class QWidget;

namespace ozm {
class CAnalysisSupport;
}

namespace korvana::desktop {

class ControlField;

/// What a field may ask of its dialog.
class FieldHost {
public:
    virtual ~FieldHost() = default;

    /// The analysis, for names, labels and codes; nullptr once the dialog was closed.
    virtual ozm::CAnalysisSupport* analysis() = 0;
    /// The largest number of decimals with which the control shows a number.
    [[nodiscard]] virtual int decimals(const ControlField& field, double number) const = 0;
    /// Sets the control's value. False when it was refused; the host has then shown the reason, beside the
    /// given part of the field or else beside the whole field.
    virtual bool put(ControlField& field, ozm::ControlValue value, QWidget* where = nullptr) = 0;
    /// Presses the control.
    virtual void press(ControlField& field) = 0;
    /// Presses another control of the dialog.
    virtual void pressControl(int control) = 0;
    /// Shows a reason beside a widget; hides it again.
    virtual void complain(QWidget& where, const QString& reason) = 0;
    virtual void complaintSettled(QWidget& where) = 0;
};

} // namespace korvana::desktop
