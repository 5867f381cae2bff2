// Focus and keys in a dialog.
#include "apps/desktop/dialogs/ControlField.h"
#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/dialogs/EditFields.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QTabWidget>
#include <QToolTip>

namespace korvana::desktop {
namespace {

constexpr int helpTime = 20'000; // milliseconds

bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// How many pages a key turns. The tab widget handles Ctrl+Tab itself, but only while it contains the focus.
int pagesTurned(const QKeyEvent& event) {
    if (!event.modifiers().testFlag(Qt::ControlModifier)) return 0;
    if (event.key() == Qt::Key_Tab || event.key() == Qt::Key_PageDown) return 1;
    return event.key() == Qt::Key_Backtab || event.key() == Qt::Key_PageUp ? -1 : 0;
}

} // namespace

void DialogView::focusFirst() {
    const int page = tabs_ != nullptr ? tabs_->currentIndex() : -1;
    for (const Placed& placed : placed_) {
        const bool shown = placed.page == -1 || placed.page == page;
        if (shown && placed.field->isEnabledTo(this) && placed.control->kind != ozm::ControlKind::Summary) {
            placed.field->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

void DialogView::rememberFocus(QWidget* focused) {
    for (const Placed& placed : placed_) {
        if (focused == nullptr || !placed.field->isAncestorOf(focused)) continue;
        const bool shutsIt = placed.control->id == ozm::ControlOk || placed.control->id == ozm::ControlCancel;
        if (!shutsIt) lastFocus_ = {placed.page, placed.control->id, focused->objectName()};
        return;
    }
}

const DialogView::Placed* DialogView::placeOf(const QWidget* widget) const {
    for (const Placed& placed : placed_)
        if (widget != nullptr && placed.field->isAncestorOf(widget)) return &placed;
    return nullptr;
}

void DialogView::markDefault(const QWidget* focused) {
    const Placed* at = placeOf(focused);
    if (at == nullptr || qobject_cast<const QPushButton*>(focused) != nullptr) return;
    const int pressed = at->control->onEnter != 0 ? at->control->onEnter : ozm::ControlOk;
    for (const Placed& placed : placed_)
        if (auto* button = dynamic_cast<ButtonField*>(placed.field))
            button->button()->setDefault(placed.control->id == pressed);
}

void DialogView::hintAt(const QWidget* focused) {
    QString hint;
    for (const Placed& placed : placed_) {
        // A list that a field has opened is a window of its own, whose parents lead back to the field.
        const QObject* inside = focused;
        while (inside != nullptr && inside != placed.field)
            inside = inside->parent();
        if (inside != nullptr && placed.control->hint != 0 && dialog_ != nullptr)
            hint = QString::fromStdString(dialog_->Analysis().GetResourceString(placed.control->hint));
    }
    if (hint == hint_) return;
    hint_ = hint;
    emit hintChanged(hint);
}

void DialogView::helpOnFocus() {
    const QWidget* focused = focusWidget();
    if (dialog_ == nullptr || dialog_->Interface() == nullptr || focused == nullptr) return;
    for (const Placed& placed : placed_) {
        if (placed.field != focused && !placed.field->isAncestorOf(focused)) continue;
        QString help;
        for (const ozm::AutomationMember& member : dialog_->Interface()->members)
            if (member.control == placed.control->id) help = fromView(member.help);
        if (help.isEmpty() && placed.control->hint != 0)
            help = QString::fromStdString(dialog_->Analysis().GetResourceString(placed.control->hint));
        if (!help.isEmpty())
            QToolTip::showText(placed.field->mapToGlobal(placed.field->rect().bottomLeft()), help,
                               placed.field, {}, helpTime);
    }
}

void DialogView::focusOn(const FocusPlace& place) {
    for (const Placed& placed : placed_) {
        if (placed.page != place.page || placed.control->id != place.control) continue;
        if (tabs_ != nullptr && place.page >= 0) tabs_->setCurrentIndex(place.page);
        auto* part = place.part.isEmpty() ? nullptr : placed.field->findChild<QWidget*>(place.part);
        (part != nullptr ? part : placed.field)->setFocus(Qt::OtherFocusReason);
        return;
    }
}

void DialogView::showPage(int page) {
    if (tabs_ == nullptr || page < 0 || page >= tabs_->count()) {
        for (const Placed& placed : placed_)
            if (placed.control->id == page) return focusOn({placed.page, page, {}});
        return;
    }
    if (page == tabs_->currentIndex()) return;
    tabs_->setCurrentIndex(page);
    focusFirst();
}

void DialogView::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // Buttons show their focus from the beginning, not only after Tab was pressed.
    setAttribute(Qt::WA_KeyboardFocusChange);
}

void DialogView::keyPressEvent(QKeyEvent* event) {
    if (const int turned = pagesTurned(*event); turned != 0 && tabs_ != nullptr)
        return showPage((tabs_->currentIndex() + turned + tabs_->count()) % tabs_->count());
    if (event->key() == Qt::Key_F1 && event->modifiers() == Qt::NoModifier) return helpOnFocus();
    if (!isEnter(*event)) return QDialog::keyPressEvent(event);
    if (auto* button = qobject_cast<QPushButton*>(focusWidget())) return button->click();
    if (const Placed* at = placeOf(focusWidget()); at != nullptr && at->control->onEnter != 0)
        return pressControl(at->control->onEnter);
    if (ControlField* ok = fieldOf(ozm::ControlOk)) return press(*ok);
    for (const Placed& placed : placed_)
        if (placed.control->kind == ozm::ControlKind::List && placed.field->focusProxy() == focusWidget())
            return press(*placed.field);
    commitEdits();
}

} // namespace korvana::desktop
