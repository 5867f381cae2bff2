#include "apps/desktop/dialogs/DragList.h"

#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPainter>

#include <algorithm>

namespace korvana::desktop {

DragList::DragList(QWidget* parent) : QListView(parent) {
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideRight);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setDragEnabled(true);
    setAcceptDrops(true);
    setDragDropMode(DragDrop);
    setTabKeyNavigation(false);
    // The focus ring must stay distinct from a selected row, which may fill a list of one line.
    setViewportMargins(ringRoom, ringRoom, ringRoom, ringRoom);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

std::vector<int> DragList::selectedNumbers() const {
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedIndexes())
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    std::vector<int> numbers;
    for (const int row : rows)
        numbers.push_back(model()->index(row, 0).data(VariableModel::NumberRole).toInt());
    return numbers;
}

void DragList::selectNumbers(const std::vector<int>& numbers) {
    selectionModel()->clearSelection();
    for (int row = 0; row < model()->rowCount(); ++row) {
        const QModelIndex index = model()->index(row, 0);
        const int number = index.data(VariableModel::NumberRole).toInt();
        if (std::find(numbers.begin(), numbers.end(), number) == numbers.end()) continue;
        selectionModel()->select(index, QItemSelectionModel::Select);
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    }
}

void DragList::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter)
        event->ignore(); // left to the dialog, as OK
    else if (!onKey || !onKey(*event))
        QListView::keyPressEvent(event);
}

void DragList::mouseDoubleClickEvent(QMouseEvent* event) {
    QListView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid() && onChosen)
        onChosen();
}

void DragList::initViewItemOption(QStyleOptionViewItem* option) const {
    QListView::initViewItemOption(option);
    if (hasFocus()) return;
    // The selection stays visible, but does not look as if it had the focus.
    const QPalette own = palette();
    option->palette.setColor(QPalette::Highlight, own.color(QPalette::Midlight));
    option->palette.setColor(QPalette::HighlightedText, own.color(QPalette::Text));
}

void DragList::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    const auto reason = event->reason();
    const bool byMouse = reason == Qt::MouseFocusReason || reason == Qt::PopupFocusReason;
    if (!byMouse && selectionModel()->selectedIndexes().isEmpty() && model()->rowCount() > 0)
        setCurrentIndex(currentIndex().isValid() ? currentIndex() : model()->index(0, 0));
    if (onEntered) onEntered();
}

void DragList::dragEnterEvent(QDragEnterEvent* event) {
    if (holdsVariables(event->mimeData()) && onDropped) event->acceptProposedAction();
}

void DragList::dragMoveEvent(QDragMoveEvent* event) {
    if (holdsVariables(event->mimeData()) && onDropped) event->acceptProposedAction();
}

void DragList::dropEvent(QDropEvent* event) {
    if (!holdsVariables(event->mimeData()) || !onDropped) return;
    const QModelIndex under = indexAt(event->position().toPoint());
    event->acceptProposedAction();
    onDropped(draggedVariables(*event->mimeData()), under.isValid() ? under.row() : model()->rowCount());
}

void DragList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (model() == nullptr || model()->rowCount() > 0 || placeholder_.isEmpty()) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const int margin = fontMetrics().averageCharWidth() / 2;
    painter.drawText(
        viewport()->rect().adjusted(margin, margin / 2, -margin, -margin / 2),
        static_cast<int>(Qt::AlignLeft | Qt::AlignTop),
        fontMetrics().elidedText(placeholder_, Qt::ElideRight, viewport()->width() - 2 * margin));
}

} // namespace korvana::desktop
