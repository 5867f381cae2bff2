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

/// Shows a dialog of an analysis, built from its template, and follows its changes. It knows kinds of
/// controls, not analyses.
///
/// Whatever the user does becomes one operation of the model (`Press`, `PutValue`). Operations do not nest:
/// what the user does while one runs (the module may process events) is ignored, and closing the
/// window then only emits `stopRequested`. A refusal is shown beside the control that was refused.
///
/// The model must outlive the view or be closed before it is destroyed; otherwise `detach` the view from it.
class DialogView : public QDialog, private ozm::DialogObserver, private FieldHost {
    Q_OBJECT
public:
    explicit DialogView(ozm::CAnalysisDialog& dialog, QWidget* parent = nullptr);
    ~DialogView() override;

    /// Shows a tab page (from 0). Where the template has no such page but a control of that number, sets the
    /// focus on that; any other number is ignored.
    void showPage(int page);
    /// Where the focus is, or was before a button took it.
    struct FocusPlace {
        int page = -1;
        int control = 0;
        QString part; ///< which part of the field
    };
    [[nodiscard]] const FocusPlace& focusPlace() const { return lastFocus_; }
    /// Sets the focus there; a place that is not in the dialog is ignored.
    void focusOn(const FocusPlace& place);
    /// Which codes were filled in, for a later view of the same dialog.
    [[nodiscard]] std::vector<CodePairs::Known> knownCodes() const { return pairs_.known(); }
    void recallCodes(const std::vector<CodePairs::Known>& known);
    /// The number of the dialog's template, valid also after the model was closed.
    [[nodiscard]] int number() const { return number_; }
    /// The data changed (another file, weights, selection): updates variables and codes. Called automatically
    /// after each operation.
    void refreshData();
    /// A notice at the top of the dialog; none if empty. A dialog that is shown grows by the height of the
    /// text, as far as the screen has room, and shrinks again.
    void setNotice(const QString& text);
    /// Hides the notice and any complaint, so that the dialog has its own size again.
    void takeBackRoom();
    /// Detaches from the model, as if it had been closed, without a signal.
    void detach();
    /// The model, nullptr after it was closed.
    [[nodiscard]] ozm::CAnalysisDialog* dialog() const { return dialog_; }
    /// Whether an operation of the model is running.
    [[nodiscard]] bool isBusy() const { return busy_; }

    /// Presses Cancel if the template has it (called for Escape and the window's close button).
    void reject() override;

signals:
    /// An operation has returned; never emitted while one runs. The receiver may delete the view.
    void operated();
    /// The model was closed, by the user or otherwise. Emitted before the `operated` of the operation that
    /// closed it.
    void dialogClosed();
    /// What the status line is to say about the control that has the focus; empty: nothing more.
    void hintChanged(const QString& hint);
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
    void EntriesChanged(ozm::CAnalysisDialog& dialog, int control) override;
    void ControlEnabled(ozm::CAnalysisDialog& dialog, int control) override;
    void DialogClosed(ozm::CAnalysisDialog& dialog) override;

    ozm::CAnalysisSupport* analysis() override;
    [[nodiscard]] int decimals(const ControlField& field, double number) const override;
    bool put(ControlField& field, ozm::ControlValue value, QWidget* where) override;
    void press(ControlField& field) override;
    void pressControl(int control) override;
    void complain(QWidget& where, const QString& reason) override;
    void complaintSettled(QWidget& where) override;

    void build();
    void makeNotice();
    void growForNotice(int wanted);
    ControlField* add(const ozm::ControlTemplate& control, int page, QWidget* parent);
    void chooseDefaults();
    void showValue(int control);
    void showEntries(int control);
    void showEnabled(int control);
    void offerCodes();
    void offerSwaps();
    /// Fills in the codes that follow from what the user has just changed.
    void fillCodes(int changed);
    void remarkFilledCodes();
    void focusFirst();
    void rememberFocus(QWidget* focused);
    void hintAt(const QWidget* focused);
    /// Marks the button that Enter presses.
    void markDefault(const QWidget* focused);
    /// The control that has a widget in it; nullptr: none.
    [[nodiscard]] const Placed* placeOf(const QWidget* widget) const;
    /// F1: what the control that has the focus is for, beside it: in the words that scripts have for it, or
    /// else its hint.
    void helpOnFocus();
    /// The focus moves on: hides a refusal whose value is no longer there.
    void leaveField(const QWidget* from, const QWidget* to);
    bool commitEdits();
    /// After an operation, by the given field or otherwise: hides a complaint whose cause is gone.
    void reconsiderComplaint(const ControlField* done);
    ControlField* fieldOf(int control);
    /// Runs an operation of the model. No value when it did not run, or when the view was destroyed
    /// meanwhile.
    std::optional<ozm::DialogResult>
    operate(const std::function<ozm::DialogResult(ozm::CAnalysisDialog&)>& operation);
    void tell();

    ozm::CAnalysisDialog* dialog_;
    int number_;
    FocusPlace lastFocus_;
    QString hint_;
    QLabel* notice_ = nullptr;
    int noticeRoom_ = 0; ///< height in pixels that the dialog grew by for it
    QTabWidget* tabs_ = nullptr;
    Callout* callout_ = nullptr;
    std::vector<Placed> placed_;
    CodePairs pairs_;
    bool busy_ = false;
    bool outOfStep_ = false; ///< a field shows what the model does not have
    bool closedUntold_ = false;
    bool operatedUntold_ = false;
};

} // namespace korvana::desktop
