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

/// A dialog around an expression: its field, below it what it gives or what is wrong and where, a moment
/// after the last key, and what expressions are made of, to be inserted.
class ExpressionDialog : public QDialog {
    Q_OBJECT

protected:
    /// @param active  stays while the dialog is open
    ExpressionDialog(ActiveData& active, const QString& title, QWidget* parent);

    /// Puts the dialog together, these fields at its top.
    void layOut(QLayout* fields);
    /// Looks at what is written and says what it gives.
    virtual void look() = 0;
    /// After an edit: a fault is not marked any more, and what is written is looked at soon.
    void lookSoon();
    /// No look is due any more.
    void lookedAt() { pause_.stop(); }

    void say(const QString& text, bool error = false);
    /// Says what is wrong, and marks the place where that is known.
    void sayFault(const std::exception& error);
    /// Puts the keyboard where the fault is marked.
    void goToFault();

    ActiveData& data_;
    ConditionEdit* expression_;

private:
    ExpressionPane* pane_; // made in the order of tabbing

protected:
    QDialogButtonBox* buttons_;

private:
    WrappedLabel* outcome_;
    QTimer pause_; ///< between the last key and the look
};

} // namespace korvana::desktop
