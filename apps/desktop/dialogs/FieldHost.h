#pragma once

#include "support/dialogs/ControlValue.h"

class QString;
class QWidget;

namespace ozm {
class CAnalysisSupport;
}

namespace korvana::desktop {

class ControlField;

/// What a field may ask of the dialog that it stands in.
class FieldHost {
public:
    virtual ~FieldHost() = default;

    /// The analysis, for names, labels and codes; nullptr once the dialog was closed.
    virtual ozm::CAnalysisSupport* analysis() = 0;
    /// How many decimals the control shows of a number at most.
    [[nodiscard]] virtual int decimals(const ControlField& field, double number) const = 0;
    /// Writes the control's value. False when it was refused, which the host has then shown, beside the part
    /// of the field that is given or else beside the whole.
    virtual bool put(ControlField& field, ozm::ControlValue value, QWidget* where = nullptr) = 0;
    /// Presses the control.
    virtual void press(ControlField& field) = 0;
    /// Shows a reason beside a widget; takes it away again.
    virtual void complain(QWidget& where, const QString& reason) = 0;
    virtual void complaintSettled(QWidget& where) = 0;
};

} // namespace korvana::desktop
