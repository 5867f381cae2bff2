#pragma once

#include "host/session/ActiveData.h"

#include <QDialog>

class QRadioButton;

namespace korvana::desktop {

class WrappedLabel;
class VariableChooser;

/// Chooses the variable that weights the cases, or none. OK applies the choice to the data (exec() returns
/// Accepted); Cancel changes nothing.
class WeightsDialog : public QDialog {
    Q_OBJECT

public:
    /// @param active  must exist while the dialog is open
    explicit WeightsDialog(ActiveData& active, QWidget* parent = nullptr);

    void accept() override;

private:
    void showEffect();

    ActiveData& data_;
    QRadioButton* none_;
    QRadioButton* byVariable_;
    VariableChooser* variables_;
    WrappedLabel* effect_;
};

} // namespace korvana::desktop
