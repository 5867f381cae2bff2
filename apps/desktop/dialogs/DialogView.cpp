#include "apps/desktop/dialogs/DialogView.h"

#include "apps/desktop/dialogs/Callout.h"
#include "apps/desktop/dialogs/ControlField.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QPointer>
#include <QTabWidget>

#include <algorithm>
#include <utility>

namespace korvana::desktop {
namespace {

/// A reason as a sentence.
QString sentence(const std::string& reason) {
    QString text = QString::fromStdString(reason).trimmed();
    if (text.isEmpty()) return QStringLiteral("This could not be done; the analysis gave no reason.");
    text[0] = text[0].toUpper();
    const bool ends =
        text.endsWith(QLatin1Char('.')) || text.endsWith(QLatin1Char('!')) || text.endsWith(QLatin1Char('?'));
    return ends ? text : text + QLatin1Char('.');
}

} // namespace

DialogView::DialogView(ozm::CAnalysisDialog& dialog, QWidget* parent)
    : QDialog(parent), dialog_(&dialog), number_(dialog.Template().number), pairs_(dialog.Template()) {
    setWindowTitle(fromView(dialog.Template().title));
    setSizeGripEnabled(true);
    build();
    offerSwaps();
    callout_ = new Callout(this);
    chooseDefaults();
    for (const ozm::ControlTemplate& control : dialog.Template().controls) {
        showEntries(control.id);
        showValue(control.id);
    }
    for (const ozm::ControlTemplate& control : dialog.Template().controls)
        showEnabled(control.id);
    offerCodes();
    dialog.AddObserver(*this);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* focused) {
        leaveField(before, focused);
        rememberFocus(focused);
        hintAt(focused);
        markDefault(focused);
    });
    focusFirst();
}

DialogView::~DialogView() {
    // A field that loses the focus writes what was typed. This must happen now, while the view still exists,
    // and after detaching from the model: closing a window enters nothing.
    detach();
    if (QWidget* focused = focusWidget()) focused->clearFocus();
    // The focus moves once more while the fields are destroyed, when this is no longer a DialogView.
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
}

void DialogView::detach() {
    if (dialog_ != nullptr) dialog_->RemoveObserver(*this);
    dialog_ = nullptr;
    hintAt(nullptr);
}

void DialogView::refreshData() {
    if (dialog_ == nullptr) return;
    for (const Placed& placed : placed_)
        placed.field->dataChanged();
    offerCodes();
    reconsiderComplaint(nullptr);
}

ControlField* DialogView::fieldOf(int control) {
    const auto found = std::find_if(placed_.begin(), placed_.end(), [control](const Placed& placed) {
        return placed.control->id == control;
    });
    return found != placed_.end() ? found->field : nullptr;
}

void DialogView::showValue(int control) {
    for (const Placed& placed : placed_)
        if (placed.control->id == control) placed.field->showValue(dialog_->Value(control));
}

void DialogView::showEntries(int control) {
    for (const Placed& placed : placed_)
        if (placed.control->id == control) placed.field->showEntries(dialog_->EntriesOf(control));
}

void DialogView::showEnabled(int control) {
    const bool enabled = dialog_->IsEnabled(control);
    for (const Placed& placed : placed_) {
        if (placed.control->id != control || placed.field->isEnabledTo(this) == enabled) continue;
        // What was typed there no longer counts, nor does any error in it.
        if (!enabled) placed.field->showValue(dialog_->Value(control));
        const QWidget* subject = callout_->subject();
        if (!enabled && subject != nullptr &&
            (subject == placed.field || placed.field->isAncestorOf(subject)))
            callout_->hide();
        placed.field->setEnabled(enabled);
        for (QLabel* caption : findChildren<QLabel*>())
            if (caption->buddy() != nullptr && placed.field->isAncestorOf(caption->buddy()))
                caption->setEnabled(enabled);
    }
}

void DialogView::EntriesChanged(ozm::CAnalysisDialog& /*dialog*/, int control) {
    if (dialog_ != nullptr) showEntries(control);
}

void DialogView::ControlEnabled(ozm::CAnalysisDialog& /*dialog*/, int control) {
    if (dialog_ != nullptr) showEnabled(control);
}

void DialogView::ControlChanged(ozm::CAnalysisDialog& /*dialog*/, int control) {
    if (dialog_ == nullptr) return;
    showValue(control);
    const ozm::ControlTemplate* found = dialog_->Template().Find(control);
    if (found == nullptr || found->kind != ozm::ControlKind::VariableSelection) return;
    offerCodes();
    remarkFilledCodes();
}

void DialogView::DialogClosed(ozm::CAnalysisDialog& /*dialog*/) {
    // No RemoveObserver here: the model is just calling its observers, and drops them when it is destroyed.
    dialog_ = nullptr;
    hintAt(nullptr);
    closedUntold_ = true;
    QMetaObject::invokeMethod(
        this, [this] { tell(); }, Qt::QueuedConnection);
}

ozm::CAnalysisSupport* DialogView::analysis() {
    return dialog_ != nullptr ? &dialog_->Analysis() : nullptr;
}

int DialogView::decimals(const ControlField& field, double number) const {
    return dialog_ != nullptr ? dialog_->Decimals(field.control(), number) : field.control().decimals;
}

std::optional<ozm::DialogResult>
DialogView::operate(const std::function<ozm::DialogResult(ozm::CAnalysisDialog&)>& operation) {
    if (dialog_ == nullptr) return std::nullopt;
    if (busy_) {
        outOfStep_ = true;
        return std::nullopt;
    }
    const QPointer<DialogView> self(this);
    busy_ = true;
    ozm::DialogResult result = operation(*dialog_);
    if (self.isNull()) return std::nullopt;
    busy_ = false;
    if (std::exchange(outOfStep_, false) && dialog_ != nullptr)
        for (const Placed& placed : placed_)
            if (!placed.field->hasPendingEdit()) placed.field->showValue(dialog_->Value(placed.control->id));
    operatedUntold_ = true;
    QMetaObject::invokeMethod(
        this, [this] { tell(); }, Qt::QueuedConnection);
    return result;
}

void DialogView::tell() {
    // Queued calls also arrive while an operation processes events; its end queues another.
    if (busy_) return;
    const QPointer<DialogView> self(this);
    if (std::exchange(closedUntold_, false)) {
        hide();
        emit dialogClosed();
    }
    if (!self.isNull() && std::exchange(operatedUntold_, false)) emit operated();
}

bool DialogView::put(ControlField& field, ozm::ControlValue value, QWidget* where) {
    const int id = field.control().id;
    const auto result =
        operate([&](ozm::CAnalysisDialog& dialog) { return dialog.PutValue(id, std::move(value)); });
    if (!result) return false;
    if (result->done) reconsiderComplaint(&field);
    if (!result->done && dialog_ != nullptr) {
        complain(where != nullptr ? *where : field, sentence(result->reason));
        // A box that was checked or a choice that was made goes back to the model's value. Typed text stays,
        // to be corrected.
        if (!field.hasPendingEdit()) field.showValue(dialog_->Value(id));
    }
    if (result->done) fillCodes(id);
    return result->done;
}

void DialogView::press(ControlField& field) {
    if (dialog_ == nullptr || busy_) return;
    const int id = field.control().id;
    if (id != ozm::ControlCancel && !commitEdits()) return;
    callout_->hide();
    const auto result = operate([id](ozm::CAnalysisDialog& dialog) { return dialog.Press(id); });
    if (!result || dialog_ == nullptr) return;
    refreshData();
    if (!result->done) complain(field, sentence(result->reason));
}

void DialogView::pressControl(int control) {
    if (ControlField* field = fieldOf(control)) press(*field);
}

bool DialogView::commitEdits() {
    for (const Placed& placed : placed_) {
        if (!placed.field->hasPendingEdit()) continue;
        if (!placed.field->commit()) {
            const Placed wrong = placed;
            if (tabs_ != nullptr && wrong.page >= 0) tabs_->setCurrentIndex(wrong.page);
            wrong.field->setFocus(Qt::OtherFocusReason);
            if (callout_->isHidden()) wrong.field->commit(); // turning the page hid the reason
            return false;
        }
        if (dialog_ == nullptr) return false;
    }
    return true;
}

void DialogView::reconsiderComplaint(const ControlField* done) {
    const QWidget* subject = callout_->subject();
    if (subject == nullptr || dialog_ == nullptr) return;
    for (const Placed& placed : placed_) {
        if (!(placed.field == subject || placed.field->isAncestorOf(subject))) continue;
        // What was typed may be valid now; a choice that was refused is no longer there.
        if (placed.field->hasPendingEdit()) {
            if (placed.field == done) return;
            const QPointer<ControlField> field(placed.field);
            QMetaObject::invokeMethod(
                this,
                [this, field] {
                    if (!field.isNull() && dialog_ != nullptr && !busy_ && callout_->subject() != nullptr)
                        field->commit();
                },
                Qt::QueuedConnection);
            return;
        }
        callout_->hide();
        return;
    }
}

void DialogView::leaveField(const QWidget* from, const QWidget* to) {
    // Not for another window, nor when a button reports what is missing.
    if (callout_ == nullptr || callout_->isHidden() || from == nullptr || to == nullptr) return;
    if (!isAncestorOf(from) || !isAncestorOf(to)) return;
    for (const Placed& placed : placed_) {
        const bool refused =
            placed.field->isAncestorOf(callout_->subject()) || placed.field == callout_->subject();
        const bool stands =
            placed.control->kind == ozm::ControlKind::PushButton || placed.field->hasPendingEdit();
        if (refused && !stands) return callout_->hide();
    }
}

void DialogView::complain(QWidget& where, const QString& reason) {
    callout_->showBeside(where, reason);
}

void DialogView::complaintSettled(QWidget& where) {
    if (callout_ != nullptr && callout_->subject() == &where) callout_->hide();
}

void DialogView::reject() {
    if (busy_) {
        emit stopRequested();
        return;
    }
    ControlField* cancel = dialog_ != nullptr ? fieldOf(ozm::ControlCancel) : nullptr;
    if (cancel != nullptr)
        press(*cancel);
    else
        QDialog::reject();
}

void DialogView::closeEvent(QCloseEvent* event) {
    if (dialog_ == nullptr && !busy_) return QDialog::closeEvent(event);
    event->ignore(); // the window closes when its model was closed
    reject();
}

} // namespace korvana::desktop
