#pragma once

#include "host/session/ActiveData.h"

#include <QDialog>
#include <QTimer>

class QLabel;
class QLineEdit;

namespace korvana::desktop {

class ConditionEdit;

/// Computes a new variable from others: a name, an expression and, while one types, what it gives for the
/// first cases, or what is wrong and where. OK adds the variable to the data (exec() answers Accepted).
class ComputeDialog : public QDialog {
    Q_OBJECT

public:
    /// @param active  stays while the dialog is open
    explicit ComputeDialog(ActiveData& active, QWidget* parent = nullptr);

    void accept() override;

private:
    void look();
    void showFault(const QString& text);
    [[nodiscard]] Definition definition() const;

    ActiveData& data_;
    QLineEdit* name_;
    ConditionEdit* expression_;
    QLabel* outcome_;
    QTimer pause_; ///< between the last key and the look at it
};

} // namespace korvana::desktop
