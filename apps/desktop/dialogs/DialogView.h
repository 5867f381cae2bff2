#pragma once

#include "apps/desktop/dialogs/CodePairs.h"
#include "apps/desktop/dialogs/FieldHost.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <QDialog>

#include <functional>
#include <optional>
#include <vector>

class QLabel;
class QTabWidget;

namespace korvana::desktop {

class Callout;
class ControlField;

/// Draws a dialog of an analysis from its template and follows it. It knows control kinds, not analyses.
///
/// Whatever the user does becomes one operation of the model (`Press`, `PutValue`). Operations do not nest:
/// what the user does while one runs (the module may process events) is ignored, and closing the
/// window then only emits `stopRequested`. A refusal is shown beside the control that was refused.
///
/// The model must outlive the view or be closed before it goes; `detach` lets go of one that is neither.
class DialogView : public QDialog, private ozm::DialogObserver, private FieldHost {
    Q_OBJECT
public:
    explicit DialogView(ozm::CAnalysisDialog& dialog, QWidget* parent = nullptr);
    ~DialogView() override;

    /// Shows a tab page (0-based); one that the template has not is ignored.
    void showPage(int page);
    /// Where the keyboard is, or was before a button took it.
    struct FocusPlace {
        int page = -1;
        int control = 0;
        QString part; ///< which part of the field
    };
    [[nodiscard]] const FocusPlace& focusPlace() const { return lastFocus_; }
    /// Puts the keyboard there; a place that is not in the dialog is ignored.
    void focusOn(const FocusPlace& place);
    /// What is known of codes that were filled in, for the view of the same dialog that comes later.
    [[nodiscard]] std::vector<CodePairs::Known> knownCodes() const { return pairs_.known(); }
    void recallCodes(const std::vector<CodePairs::Known>& known);
    /// The number of the dialog's template, also after the model was closed.
    [[nodiscard]] int number() const { return number_; }
    /// The data changed (another file, weights, selection): variables and codes are asked for anew. Done by
    /// itself after each operation.
    void refreshData();
    /// What is to be known about the whole dialog, at its top; empty: nothing. A dialog that is shown grows
    /// by what the text takes, as far as the screen has room, and shrinks again.
    void setNotice(const QString& text);
    /// Ends notice and complaint, so that the dialog's size is its own.
    void takeBackRoom();
    /// Lets go of the model, as if it had been closed, without a signal.
    void detach();
    /// The model, nullptr after it was closed.
    [[nodiscard]] ozm::CAnalysisDialog* dialog() const { return dialog_; }
    /// Whether an operation of the model is running.
    [[nodiscard]] bool isBusy() const { return busy_; }

    /// Presses Cancel when the template has it (Escape and the window's close button come here).
    void reject() override;

signals:
    /// An operation has returned; never while one runs. The receiver may delete the view.
    void operated();
    /// The model was closed, by whomever. Comes before the `operated` of the operation that closed it.
    void dialogClosed();
    /// The user wants to close the window while an operation runs.
    void stopRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct Placed {
        const ozm::ControlTemplate* control;
        ControlField* field;
        int page; ///< -1: beside the pages
    };

    void ControlChanged(ozm::CAnalysisDialog& dialog, int control) override;
    void ControlEnabled(ozm::CAnalysisDialog& dialog, int control) override;
    void DialogClosed(ozm::CAnalysisDialog& dialog) override;

    ozm::CAnalysisSupport* analysis() override;
    [[nodiscard]] int decimals(const ControlField& field, double number) const override;
    bool put(ControlField& field, ozm::ControlValue value, QWidget* where) override;
    void press(ControlField& field) override;
    void complain(QWidget& where, const QString& reason) override;
    void complaintSettled(QWidget& where) override;

    void build();
    void makeNotice();
    void growForNotice(int wanted);
    ControlField* add(const ozm::ControlTemplate& control, int page, QWidget* parent);
    void chooseDefaults();
    void showValue(int control);
    void showEnabled(int control);
    void offerCodes();
    void offerSwaps();
    /// Puts the codes that follow from what the user has just changed.
    void fillCodes(int changed);
    void remarkFilledCodes();
    void focusFirst();
    void rememberFocus(QWidget* focused);
    /// The keyboard goes elsewhere: a refusal of what was not taken, and is not there any more, goes too.
    void leaveField(const QWidget* from, const QWidget* to);
    bool commitEdits();
    /// After something was done, by the field given or otherwise: a complaint whose cause is gone goes too.
    void reconsiderComplaint(const ControlField* done);
    ControlField* fieldOf(int control);
    /// Runs an operation of the model. Nothing when it did not run, or when the view went while it did.
    std::optional<ozm::DialogResult>
    operate(const std::function<ozm::DialogResult(ozm::CAnalysisDialog&)>& operation);
    void tell();

    ozm::CAnalysisDialog* dialog_;
    int number_;
    FocusPlace lastFocus_;
    QLabel* notice_ = nullptr;
    int noticeRoom_ = 0; ///< pixels that the dialog grew for it
    QTabWidget* tabs_ = nullptr;
    Callout* callout_ = nullptr;
    std::vector<Placed> placed_;
    CodePairs pairs_;
    bool busy_ = false;
    bool outOfStep_ = false; ///< a field shows what the model did not take
    bool closedUntold_ = false;
    bool operatedUntold_ = false;
};

} // namespace korvana::desktop
