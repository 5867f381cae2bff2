#pragma once

#include "host/session/ActiveData.h"

#include <QDialog>
#include <QTimer>
#include <exception>

class QDialogButtonBox;
class QLayout;

namespace korvana::desktop {

class WrappedLabel;
class ConditionEdit;
class ExpressionPane;

/// A dialog for an expression: its field; below it, a moment after the last key, the result or the error; and
/// variables and values that can be inserted.
class ExpressionDialog : public QDialog {
    Q_OBJECT

protected:
    /// @param active  must exist while the dialog is open
    ExpressionDialog(ActiveData& active, const QString& title, QWidget* parent);

    /// Lays out the dialog, with these fields at its top.
    void layOut(QLayout* fields);
    /// Checks the expression and shows its result.
    virtual void look() = 0;
    /// After an edit: removes the mark of an error, and has the expression checked soon.
    void lookSoon();
    /// Cancels the check that is due.
    void lookedAt() { pause_.stop(); }

    void say(const QString& text, bool error = false);
    /// Shows an error, and marks its place if that is known.
    void sayFault(const std::exception& error);
    /// Moves the focus to the marked place.
    void goToFault();

    ActiveData& data_;
    ConditionEdit* expression_;

private:
    ExpressionPane* pane_; // made in tab order

protected:
    QDialogButtonBox* buttons_;

private:
    WrappedLabel* outcome_;
    QTimer pause_; ///< between the last key and the check
};

} // namespace korvana::desktop
