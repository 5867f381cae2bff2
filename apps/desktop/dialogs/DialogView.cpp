#include "apps/desktop/dialogs/DialogView.h"

#include "apps/desktop/dialogs/Callout.h"
#include "apps/desktop/dialogs/CodeField.h"
#include "apps/desktop/dialogs/DialogLayout.h"
#include "apps/desktop/dialogs/EditFields.h"
#include "apps/desktop/dialogs/MakeField.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

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

bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

/// How many pages a key turns. The tabs know Ctrl+Tab, but only while the focus is below them.
int pagesTurned(const QKeyEvent& event) {
    if (!event.modifiers().testFlag(Qt::ControlModifier)) return 0;
    if (event.key() == Qt::Key_Tab || event.key() == Qt::Key_PageDown) return 1;
    return event.key() == Qt::Key_Backtab || event.key() == Qt::Key_PageUp ? -1 : 0;
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
    for (const ozm::ControlTemplate& control : dialog.Template().controls)
        showValue(control.id);
    offerCodes();
    dialog.AddObserver(*this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget*, QWidget* focused) { rememberFocus(focused); });
    focusFirst();
}

DialogView::~DialogView() {
    // A field that loses the focus writes what was typed. That must happen now, while there is somebody to
    // ask, and to a model that is let go: closing a window takes nothing.
    detach();
    if (QWidget* focused = focusWidget()) focused->clearFocus();
    // The focus moves once more while the fields go, when this is no dialog view any longer.
    disconnect(qApp, &QApplication::focusChanged, this, nullptr);
}

void DialogView::detach() {
    if (dialog_ != nullptr) dialog_->RemoveObserver(*this);
    dialog_ = nullptr;
}

ControlField* DialogView::add(const ozm::ControlTemplate& control, int page, QWidget* parent) {
    ControlField* field = makeField(control, *this, parent);
    placed_.push_back({&control, field, page});
    return field;
}

void DialogView::build() {
    using Fields = std::vector<ControlField*>;
    const ozm::DialogTemplate& shape = dialog_->Template();
    const int pages = static_cast<int>(shape.pages.size());

    auto* across = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    across->addLayout(left, 1);
    across->addLayout(right);

    notice_ = new QLabel(this);
    notice_->setObjectName(QStringLiteral("notice"));
    notice_->setTextFormat(Qt::PlainText);
    notice_->setWordWrap(true);
    notice_->setFrameShape(QFrame::StyledPanel);
    notice_->setMargin(fontMetrics().height() / 3);
    notice_->setAutoFillBackground(true);
    notice_->setBackgroundRole(QPalette::ToolTipBase);
    notice_->setForegroundRole(QPalette::ToolTipText);
    notice_->hide();
    left->addWidget(notice_);
    auto* above = new QWidget(this);
    std::vector<QWidget*> sheets;
    if (pages > 0) {
        tabs_ = new QTabWidget(this);
        for (const std::string_view title : shape.pages) {
            sheets.push_back(new QWidget);
            tabs_->addTab(scrollable(sheets.back()), fromView(title));
        }
    }
    auto* below = new QWidget(this);
    std::vector<Fields> onSheets(sheets.size());
    Fields aboveTabs;
    Fields belowTabs;

    // Fields are made in the template's order, which is the order of tabbing.
    bool seenPaged = false;
    for (const ozm::ControlTemplate& control : shape.controls) {
        bool paged = false;
        for (const int page : control.pages) {
            if (page >= pages) continue;
            const auto at = static_cast<std::size_t>(page);
            onSheets[at].push_back(add(control, page, sheets[at]));
            paged = seenPaged = true;
        }
        if (paged) continue;
        if (control.kind == ozm::ControlKind::PushButton) {
            right->addWidget(add(control, -1, this));
        } else if (pages == 1) { // a single page shows what all pages show
            onSheets[0].push_back(add(control, 0, sheets[0]));
        } else if (seenPaged) {
            belowTabs.push_back(add(control, -1, below));
        } else {
            aboveTabs.push_back(add(control, -1, above));
        }
    }
    right->addStretch(1);

    const auto grow = [](const Fields& fields) {
        return std::any_of(fields.begin(), fields.end(),
                           [](const ControlField* field) { return field->growsInHeight(); });
    };
    const auto settle = [&](QWidget* part, const Fields& fields) {
        layOutFields(*part, fields);
        part->layout()->setContentsMargins(0, 0, 0, 0);
        part->setVisible(!fields.empty());
        left->addWidget(part, grow(fields) ? 1 : 0);
    };
    settle(above, aboveTabs);
    bool tabsGrow = !grow(aboveTabs);
    for (std::size_t page = 0; page < sheets.size(); ++page) {
        layOutFields(*sheets[page], onSheets[page]);
        tabsGrow = tabsGrow || grow(onSheets[page]);
    }
    if (tabs_ != nullptr) {
        left->addWidget(tabs_, tabsGrow ? 1 : 0);
        connect(tabs_, &QTabWidget::currentChanged, this, [this] { callout_->hide(); });
    }
    settle(below, belowTabs);
}

void DialogView::chooseDefaults() {
    auto* ok = dynamic_cast<ButtonField*>(fieldOf(ozm::ControlOk));
    for (const Placed& placed : placed_)
        if (const auto* button = dynamic_cast<ButtonField*>(placed.field))
            // Without an OK, Enter in a field takes what was typed and presses nothing.
            button->button()->setAutoDefault(ok != nullptr);
    if (ok != nullptr) ok->button()->setDefault(true);
}

void DialogView::focusFirst() {
    const int page = tabs_ != nullptr ? tabs_->currentIndex() : -1;
    for (const Placed& placed : placed_) {
        const bool shown = placed.page == -1 || placed.page == page;
        if (shown && placed.control->kind != ozm::ControlKind::Summary) {
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
    if (tabs_ == nullptr || page < 0 || page >= tabs_->count() || page == tabs_->currentIndex()) return;
    tabs_->setCurrentIndex(page);
    focusFirst();
}

void DialogView::setNotice(const QString& text) {
    if (notice_->text() == text) return;
    notice_->setText(text);
    notice_->setVisible(!text.isEmpty());
    if (text.isEmpty()) return;
    QAccessibleEvent alert(notice_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
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

void DialogView::offerCodes() {
    const auto& controls = dialog_->Template().controls;
    const auto chooser = std::find_if(controls.begin(), controls.end(), [](const ozm::ControlTemplate& c) {
        return c.kind == ozm::ControlKind::VariableSelection;
    });
    if (chooser == controls.end()) return;
    const auto* selection = std::get_if<ozm::VariableSelection>(&dialog_->Value(chooser->id));
    for (const Placed& placed : placed_) {
        const auto role = static_cast<std::size_t>(placed.control->codesOfRole);
        if (placed.control->codesOfRole < 0 || role >= chooser->roles.size() || selection == nullptr)
            continue;
        const bool chosen = role < selection->size() && !(*selection)[role].empty();
        placed.field->offerCodesOf(chosen ? (*selection)[role].front() : 0,
                                   fromView(chooser->roles[role].prompt));
    }
}

void DialogView::offerSwaps() {
    for (const Placed& placed : placed_)
        for (const Placed& before : placed_) {
            if (&before == &placed) break;
            if (before.page != placed.page || pairs_.partnerOf(placed.control->id) != before.control->id)
                continue;
            auto* field = dynamic_cast<CodeField*>(placed.field);
            auto* other = dynamic_cast<CodeField*>(before.field);
            if (field != nullptr && other != nullptr) field->offerSwapWith(*other);
        }
}

void DialogView::fillCodes(int changed) {
    if (dialog_ == nullptr) return;
    const auto untouched = [this](int control) {
        return std::none_of(placed_.begin(), placed_.end(), [control](const Placed& placed) {
            return placed.control->id == control && placed.field->hasPendingEdit();
        });
    };
    for (const CodePairs::Fill& fill : pairs_.after(*dialog_, changed, untouched)) {
        const auto result =
            operate([&](ozm::CAnalysisDialog& dialog) { return dialog.PutValue(fill.control, fill.code); });
        if (!result || dialog_ == nullptr) return;
        for (const Placed& placed : placed_)
            if (auto* field = dynamic_cast<CodeField*>(placed.field);
                field != nullptr && placed.control->id == fill.control)
                field->showAsFilled();
    }
}

void DialogView::ControlChanged(ozm::CAnalysisDialog& /*dialog*/, int control) {
    if (dialog_ == nullptr) return;
    showValue(control);
    const ozm::ControlTemplate* found = dialog_->Template().Find(control);
    if (found != nullptr && found->kind == ozm::ControlKind::VariableSelection) offerCodes();
}

void DialogView::DialogClosed(ozm::CAnalysisDialog& /*dialog*/) {
    // The model leaves out its observers when it dies; it is not asked to forget us, for it is telling them.
    dialog_ = nullptr;
    closedUntold_ = true;
    QMetaObject::invokeMethod(
        this, [this] { tell(); }, Qt::QueuedConnection);
}

ozm::CAnalysisSupport* DialogView::analysis() {
    return dialog_ != nullptr ? &dialog_->Analysis() : nullptr;
}

template <class Operation>
std::optional<ozm::DialogResult> DialogView::operate(const Operation& operation) {
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
    // Queued calls also arrive while an operation lets the window breathe; its end queues another.
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
        // A box that was ticked, a choice made: back to what holds. Typed text stays, to be mended.
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

bool DialogView::commitEdits() {
    for (const Placed& placed : placed_) {
        if (!placed.field->hasPendingEdit()) continue;
        if (!placed.field->commit()) {
            const Placed wrong = placed;
            if (tabs_ != nullptr && wrong.page >= 0) tabs_->setCurrentIndex(wrong.page);
            wrong.field->setFocus(Qt::OtherFocusReason);
            if (callout_->isHidden()) wrong.field->commit(); // turning the page took the reason away
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
        if (placed.field == done || !(placed.field == subject || placed.field->isAncestorOf(subject)))
            continue;
        // What was typed may be right now; a choice that was refused is not there any more.
        if (placed.field->hasPendingEdit()) {
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
    event->ignore(); // the window goes when its model was closed
    reject();
}

void DialogView::keyPressEvent(QKeyEvent* event) {
    if (const int turned = pagesTurned(*event); turned != 0 && tabs_ != nullptr)
        return showPage((tabs_->currentIndex() + turned + tabs_->count()) % tabs_->count());
    if (!isEnter(*event)) return QDialog::keyPressEvent(event);
    if (auto* button = qobject_cast<QPushButton*>(focusWidget())) return button->click();
    if (ControlField* ok = fieldOf(ozm::ControlOk)) return press(*ok);
    for (const Placed& placed : placed_)
        if (placed.control->kind == ozm::ControlKind::List && placed.field->focusProxy() == focusWidget())
            return press(*placed.field);
    commitEdits();
}

} // namespace korvana::desktop
