#include "apps/desktop/dialogs/TableField.h"

#include "apps/desktop/EllipsisHeader.h"
#include "support/CAnalysisSupport.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTreeWidget>

#include <algorithm>

namespace korvana::desktop {
namespace {

constexpr int shownRows = 6;
constexpr int shownLetters = 60; ///< of all columns together

} // namespace

TableField::TableField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), table_(new QTreeWidget(this)) {
    auto* header = new EllipsisHeader(Qt::Horizontal, table_);
    header->setSectionsClickable(false); // the rows have an order of their own
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setStretchLastSection(true);
    table_->setHeader(header);
    table_->setRootIsDecorated(false);
    table_->setUniformRowHeights(true);
    table_->setAllColumnsShowFocus(true);
    table_->setAlternatingRowColors(true);
    table_->setTextElideMode(Qt::ElideRight);
    const QString caption = plainCaptionOf(control);
    table_->setAccessibleName(caption.isEmpty() ? QStringLiteral("Entries") : caption);
    table_->installEventFilter(this);
    fillWith(table_, Caption::Above);
    QStringList headings;
    if (ozm::CAnalysisSupport* analysis = host.analysis())
        for (const int heading : control.columns)
            headings += QString::fromStdString(analysis->GetResourceString(heading)).simplified();
    table_->setHeaderLabels(headings);
    askForRoom();
    QObject::connect(table_, &QTreeWidget::itemSelectionChanged, this, [this] {
        const auto selected = table_->selectedItems();
        this->host().put(*this, selected.isEmpty()
                                    ? ozm::noEntry
                                    : static_cast<int>(table_->indexOfTopLevelItem(selected.first())));
    });
    QObject::connect(table_, &QTreeWidget::itemDoubleClicked, this, [this] { this->host().press(*this); });
}

void TableField::askForRoom() {
    const int row = table_->fontMetrics().height() * 5 / 4;
    const int frame = 2 * table_->frameWidth();
    table_->setMinimumHeight(table_->header()->sizeHint().height() + shownRows * row + frame);
    table_->setMinimumWidth(table_->fontMetrics().averageCharWidth() * shownLetters + frame);
}

void TableField::showEntries(const ozm::ListRows& rows) {
    // Rows that stay keep their items: the dialog may set its entries while one of them is being clicked.
    const QSignalBlocker quiet(table_);
    const int wanted = static_cast<int>(rows.size());
    while (table_->topLevelItemCount() > wanted)
        delete table_->takeTopLevelItem(table_->topLevelItemCount() - 1);
    for (int place = 0; place < wanted; ++place) {
        if (place == table_->topLevelItemCount()) table_->addTopLevelItem(new QTreeWidgetItem);
        QTreeWidgetItem* item = table_->topLevelItem(place);
        QStringList heard;
        for (int column = 0; column < table_->columnCount(); ++column) {
            const QString text = QString::fromStdString(
                rows[static_cast<std::size_t>(place)][static_cast<std::size_t>(column)]);
            item->setText(column, text);
            item->setToolTip(column, text);
            heard += text;
        }
        item->setData(0, Qt::AccessibleTextRole, heard.join(QStringLiteral(", ")));
    }
    fitColumns();
}

void TableField::fitColumns() {
    const int most = std::max(table_->viewport()->width(), table_->minimumWidth()) / table_->columnCount();
    for (int column = 0; column + 1 < table_->columnCount(); ++column) {
        table_->resizeColumnToContents(column);
        table_->setColumnWidth(column, std::min(table_->columnWidth(column), most));
    }
}

void TableField::showValue(const ozm::ControlValue& value) {
    const QSignalBlocker quiet(table_);
    const int* position = std::get_if<int>(&value);
    // nullptr, where nothing is selected, also takes the selection away.
    table_->setCurrentItem(position != nullptr ? table_->topLevelItem(*position) : nullptr);
    if (table_->currentItem() != nullptr) table_->scrollToItem(table_->currentItem());
}

bool TableField::eventFilter(QObject* watched, QEvent* event) {
    const auto* key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event) : nullptr;
    const bool deletes = key != nullptr && key->key() == Qt::Key_Delete && key->modifiers() == Qt::NoModifier;
    if (!deletes || control().onDelete == 0) return ControlField::eventFilter(watched, event);
    host().pressControl(control().onDelete);
    return true;
}

} // namespace korvana::desktop
