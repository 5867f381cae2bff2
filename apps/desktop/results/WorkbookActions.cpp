// Menu actions for results.
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QTreeWidget>

#include "apps/desktop/results/OutputView.h"
#include "apps/desktop/results/Workbook.h"

namespace korvana::desktop {
namespace {

/// Whether it is a table whose current cell can be edited.
bool edits(const QObject* watched) {
    const auto* table = qobject_cast<const QAbstractItemView*>(watched);
    return table != nullptr && table->editTriggers().testFlag(QAbstractItemView::EditKeyPressed) &&
           table->currentIndex().flags().testFlag(Qt::ItemIsEditable);
}

} // namespace

void Workbook::makeActions() {
    const auto make = [this](const QString& text, const QKeySequence& keys, Qt::ShortcutContext context,
                             auto slot) {
        auto* action = new QAction(text, this);
        action->setShortcut(keys);
        action->setShortcutContext(context);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
        return action;
    };
    copy_ = make(tr("&Copy"), QKeySequence::Copy, Qt::WidgetWithChildrenShortcut, [this] {
        if (OutputView* shown = currentView()) shown->copy();
    });
    // These also work with the focus in a dialog of the analysis.
    exportOutput_ = make(tr("&Export This Output..."), Qt::CTRL | Qt::Key_E, Qt::ApplicationShortcut,
                         [this] { exportOutput(); });
    exportRun_ = make(tr("E&xport Workbook..."), Qt::CTRL | Qt::SHIFT | Qt::Key_E, Qt::ApplicationShortcut,
                      [this] { exportRuns(); });
    saveScript_ =
        make(tr("Save as P&ython Script..."), {}, Qt::ApplicationShortcut, [this] { saveScript(); });
    print_ = make(tr("&Print..."), QKeySequence::Print, Qt::ApplicationShortcut, [this] { printOutput(); });
    preview_ = make(tr("Print Pre&view..."), {}, Qt::ApplicationShortcut, [this] { previewOutput(); });
    for (QAction*& separator : separators_) {
        separator = new QAction(this);
        separator->setSeparator(true);
    }
    // Delete works in the tree only: elsewhere it may have another meaning.
    removeOutput_ = new QAction(tr("Remove This &Output"), this);
    removeRun_ = new QAction(tr("&Remove This Run"), this);
    for (QAction* action : {removeOutput_, removeRun_}) {
        action->setShortcutContext(Qt::WidgetShortcut);
        tree_->addAction(action);
    }
    connect(removeOutput_, &QAction::triggered, this,
            [this] { removeOutput(currentRun(), currentOutput()); });
    connect(removeRun_, &QAction::triggered, this, [this] { removeRun(currentRun()); });
    undo_ = make(tr("&Undo Remove"), QKeySequence::Undo, Qt::WindowShortcut, [this] { undo(); });
}

void Workbook::offerKeysOf(OutputView* shown) {
    if (shown == keysOf_) return;
    // Only one view's actions are here at a time, or the same keys of several would be ambiguous.
    if (keysOf_ != nullptr)
        for (QAction* action : keysOf_->viewActions())
            removeAction(action);
    keysOf_ = shown;
    if (shown != nullptr) addActions(shown->viewActions());
}

bool Workbook::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && QApplication::activeModalWidget() == nullptr) {
        const QKeySequence keys(static_cast<QKeyEvent*>(event)->keyCombination());
        if (keys == QKeySequence(Qt::Key_F2) && edits(watched)) { // begins the editing of the cell
            event->accept();
            return true;
        }
        // Some of these keys also move the cursor in a line of text. Here they export and print everywhere.
        for (const QAction* action : {exportOutput_, exportRun_, print_})
            if (action->isEnabled() && action->shortcut() == keys) {
                event->ignore();
                return true;
            }
    }
    return QWidget::eventFilter(watched, event);
}

void Workbook::showMenu(const QPoint& place) {
    const OutputView* shown = currentView();
    if (shown == nullptr) return;
    QMenu menu(this);
    menu.addActions(menuActions());
    menu.exec(place);
}

QList<QAction*> Workbook::menuActions() const {
    QList<QAction*> actions{copy_};
    if (OutputView* shown = currentView()) actions += shown->viewActions();
    actions += {separators_[0], exportOutput_,  exportRun_,    saveScript_, print_,
                preview_,       separators_[1], removeOutput_, removeRun_,  undo_};
    return actions;
}

QAction* Workbook::copyAction() const {
    return copy_;
}
QAction* Workbook::exportOutputAction() const {
    return exportOutput_;
}
QAction* Workbook::exportRunAction() const {
    return exportRun_;
}
QAction* Workbook::saveScriptAction() const {
    return saveScript_;
}
QAction* Workbook::printAction() const {
    return print_;
}
QAction* Workbook::printPreviewAction() const {
    return preview_;
}

} // namespace korvana::desktop
