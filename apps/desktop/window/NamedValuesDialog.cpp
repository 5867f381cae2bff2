#include "apps/desktop/window/NamedValuesDialog.h"

#include "apps/desktop/dialogs/Codes.h"
#include "apps/desktop/dialogs/ControlField.h"
#include "apps/desktop/text/ErrorLine.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace korvana::desktop {
namespace {

QStringList numbersCopied() {
    static const QRegularExpression between(QStringLiteral("[\\s,;]+"));
    return QGuiApplication::clipboard()->text().split(between, Qt::SkipEmptyParts);
}

/// Enter goes on to the next row, as Tab does; from the last one it only ends the editing. Several numbers
/// that are pasted into an editor go into the rows.
class NextRow final : public QStyledItemDelegate {
public:
    explicit NextRow(QTableWidget* table) : QStyledItemDelegate(table), table_(table) {}

protected:
    bool eventFilter(QObject* editor, QEvent* event) override {
        const auto* key = event->type() == QEvent::KeyPress ? dynamic_cast<QKeyEvent*>(event) : nullptr;
        if (key != nullptr && key->matches(QKeySequence::Paste) && numbersCopied().size() > 1) {
            emit closeEditor(qobject_cast<QWidget*>(editor), RevertModelCache);
            QCoreApplication::sendEvent(table_, event);
            return true;
        }
        const bool enters = key != nullptr && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter);
        if (!enters) return QStyledItemDelegate::eventFilter(editor, event);
        const bool last = table_->currentRow() + 1 == table_->rowCount();
        emit commitData(qobject_cast<QWidget*>(editor));
        emit closeEditor(qobject_cast<QWidget*>(editor), last ? NoHint : EditNextItem);
        return true;
    }

private:
    QTableWidget* table_;
};

} // namespace

NamedValuesDialog::NamedValuesDialog(std::span<const std::string> names, std::span<const double> values,
                                     QWidget* parent)
    : QDialog(parent), values_(values.begin(), values.end()),
      table_(new QTableWidget(static_cast<int>(names.size()), 1, this)), reason_(new ErrorLine(this)) {
    setWindowTitle(tr("Values by Name"));
    table_->setHorizontalHeaderLabels({tr("Value")});
    table_->setAccessibleName(tr("Values"));
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    table_->verticalHeader()->setMaximumWidth(fontMetrics().averageCharWidth() * 40);
    table_->setTabKeyNavigation(false);
    table_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                            QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setItemDelegate(new NextRow(table_));
    for (int row = 0; row < table_->rowCount(); ++row) {
        const auto at = static_cast<std::size_t>(row);
        auto* header = new QTableWidgetItem(fromView(names[at]));
        header->setToolTip(fromView(names[at]));
        table_->setVerticalHeaderItem(row, header);
        auto* item = new QTableWidgetItem(codeText(values_[at]));
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        table_->setItem(row, 0, item);
    }
    table_->installEventFilter(this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* zeros = buttons->addButton(tr("All &Zero"), QDialogButtonBox::ResetRole);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    layout->addWidget(reason_);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &NamedValuesDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &NamedValuesDialog::reject);
    connect(zeros, &QPushButton::clicked, this, [this] { fillWithZeros(); });
    connect(table_, &QTableWidget::itemChanged, this, [this] { reason_->hide(); });

    constexpr int rowsShown = 15;
    const int rows = std::clamp(table_->rowCount(), 3, rowsShown) + 2; // with the header, and a bit
    table_->setMinimumHeight(rows * table_->verticalHeader()->defaultSectionSize());
    setMinimumWidth(fontMetrics().averageCharWidth() * 50);
    table_->setCurrentCell(0, 0);
    table_->setFocus();
}

void NamedValuesDialog::accept() {
    for (int row = 0; row < table_->rowCount(); ++row) {
        const QString text = table_->item(row, 0)->text().trimmed();
        bool isNumber = false;
        const double value = text.toDouble(&isNumber);
        if (isNumber && std::isfinite(value)) {
            values_[static_cast<std::size_t>(row)] = value;
            continue;
        }
        const QString name = table_->verticalHeaderItem(row)->text();
        reason_->tell(text.isEmpty()
                          ? tr("%1 has no value; enter a number.").arg(name)
                          : tr("'%1' of %2 is not a number; write it with a decimal point, as in 0.5.")
                                .arg(text, name));
        table_->setCurrentCell(row, 0);
        table_->setFocus();
        return;
    }
    QDialog::accept();
}

bool NamedValuesDialog::eventFilter(QObject* watched, QEvent* event) {
    if (watched == table_ && event->type() == QEvent::KeyPress) {
        const auto* key = dynamic_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Paste)) {
            paste();
            return true;
        }
        if (key->matches(QKeySequence::Delete)) {
            table_->currentItem()->setText({});
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void NamedValuesDialog::paste() {
    int row = std::max(table_->currentRow(), 0);
    for (const QString& part : numbersCopied()) {
        if (row == table_->rowCount()) break;
        table_->item(row++, 0)->setText(part);
    }
}

void NamedValuesDialog::fillWithZeros() {
    for (int row = 0; row < table_->rowCount(); ++row)
        table_->item(row, 0)->setText(QStringLiteral("0"));
}

} // namespace korvana::desktop
