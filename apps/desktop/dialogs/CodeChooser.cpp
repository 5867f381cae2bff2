#include "apps/desktop/dialogs/CodeChooser.h"

#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace korvana::desktop {

CodeChooser::CodeChooser(const QString& title, const std::vector<double>& codes, const QStringList& texts,
                         const std::vector<double>& taken, int more, QWidget* parent)
    : QDialog(parent), codes_(codes), taken_(taken), list_(new QListWidget) {
    setWindowTitle(title);
    list_->setAccessibleName(title);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setUniformItemSizes(true);
    for (const QString& text : texts)
        new QListWidgetItem(text, list_);
    int first = -1;
    for (int row = 0; row < list_->count(); ++row) {
        const bool isTaken =
            std::find(taken_.begin(), taken_.end(), codes_[static_cast<std::size_t>(row)]) != taken_.end();
        list_->item(row)->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        list_->item(row)->setCheckState(isTaken ? Qt::Checked : Qt::Unchecked);
        if (isTaken && first < 0) first = row;
    }
    list_->setCurrentRow(std::max(first, 0)); // keys have something to act on
    list_->installEventFilter(this);
    constexpr int fewest = 8;
    constexpr int most = 20;
    const int frame = 2 * list_->frameWidth();
    const int width = list_->sizeHintForColumn(0) + list_->verticalScrollBar()->sizeHint().width() + frame;
    list_->setMinimumWidth(std::min(width, fontMetrics().averageCharWidth() * 80));
    list_->setMinimumHeight(list_->sizeHintForRow(0) * std::clamp(list_->count(), fewest, most) + frame);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* all = buttons->addButton(QStringLiteral("&All"), QDialogButtonBox::ActionRole);
    auto* none = buttons->addButton(QStringLiteral("&None"), QDialogButtonBox::ActionRole);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    QObject::connect(all, &QPushButton::clicked, this, [this] { check(true); });
    QObject::connect(none, &QPushButton::clicked, this, [this] { check(false); });
    QObject::connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_);
    if (more > 0)
        layout->addWidget(new QLabel(QStringLiteral("%1 more are not listed; type them.").arg(more)));
    layout->addWidget(buttons);
    list_->setFocus();
}

void CodeChooser::check(bool on) {
    for (int row = 0; row < list_->count(); ++row)
        list_->item(row)->setCheckState(on ? Qt::Checked : Qt::Unchecked);
}

bool CodeChooser::isChecked(std::size_t at) const {
    return list_->item(static_cast<int>(at))->checkState() == Qt::Checked;
}

bool CodeChooser::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
        const QListWidgetItem* current = list_->currentItem();
        const bool on = current != nullptr && current->checkState() != Qt::Checked;
        for (QListWidgetItem* item : list_->selectedItems())
            item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
        return true;
    }
    return QDialog::eventFilter(watched, event);
}

std::vector<double> CodeChooser::chosen() const {
    std::vector<double> codes;
    for (const double code : taken_) {
        const auto offered = std::find(codes_.begin(), codes_.end(), code);
        // One that is not listed cannot be unchecked.
        if (offered == codes_.end() || isChecked(static_cast<std::size_t>(offered - codes_.begin())))
            codes.push_back(code);
    }
    for (std::size_t at = 0; at < codes_.size(); ++at)
        if (isChecked(at) && std::find(taken_.begin(), taken_.end(), codes_[at]) == taken_.end())
            codes.push_back(codes_[at]);
    return codes;
}

} // namespace korvana::desktop
