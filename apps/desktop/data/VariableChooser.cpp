#include "apps/desktop/data/VariableChooser.h"

#include "apps/desktop/data/GridText.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QVBoxLayout>

namespace korvana::desktop {
namespace {

constexpr int variableRole = Qt::UserRole;

int variableAt(const QModelIndex& index) {
    return index.isValid() ? index.data(variableRole).toInt() : -1;
}

} // namespace

VariableChooser::VariableChooser(const DataSet& dataSet, bool numbersOnly, QWidget* parent)
    : QWidget(parent), all_(new QStandardItemModel(this)), found_(new QSortFilterProxyModel(this)),
      search_(new QLineEdit(this)), list_(new QListView(this)) {
    for (int i = 0; i < dataSet.variableCount(); ++i) {
        const Variable& variable = dataSet.variable(i);
        if (numbersOnly && variable.kind != VariableKind::Number) continue;
        QString text = shown(variable.name);
        if (!variable.label.empty()) text += QStringLiteral("  \u2013  ") + shown(variable.label);
        auto* item = new QStandardItem(text);
        item->setData(i, variableRole);
        item->setEditable(false);
        item->setToolTip(text);
        all_->appendRow(item);
    }
    found_->setSourceModel(all_);
    found_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    list_->setModel(found_);
    list_->setUniformItemSizes(true);
    list_->setTextElideMode(Qt::ElideRight);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // so that a long name ends in an ellipsis
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setAccessibleName(tr("Variables"));
    search_->setPlaceholderText(tr("Search"));
    search_->setAccessibleName(tr("Search for a variable"));
    search_->setClearButtonEnabled(true);
    search_->installEventFilter(this);
    list_->installEventFilter(this);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& text) {
        found_->setFilterFixedString(text);
        if (!list_->currentIndex().isValid() && found_->rowCount() > 0)
            list_->setCurrentIndex(found_->index(0, 0));
    });
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) { emit currentChanged(variableAt(index)); });
    connect(list_, &QListView::doubleClicked, this,
            [this](const QModelIndex& index) { emit chosen(variableAt(index)); });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(search_);
    layout->addWidget(list_, 1);
    setFocusProxy(search_);
}

int VariableChooser::current() const {
    return variableAt(list_->currentIndex());
}

void VariableChooser::setCurrent(int variable0) {
    for (int row = 0; row < found_->rowCount(); ++row) {
        const QModelIndex index = found_->index(row, 0);
        if (variableAt(index) != variable0) continue;
        list_->setCurrentIndex(index);
        list_->scrollTo(index);
        return;
    }
}

int VariableChooser::count() const {
    return all_->rowCount();
}

bool VariableChooser::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (object == search_ && (key == Qt::Key_Down || key == Qt::Key_Up)) {
            list_->setFocus(Qt::OtherFocusReason);
            if (!list_->currentIndex().isValid()) list_->setCurrentIndex(found_->index(0, 0));
            return true;
        }
    }
    return QWidget::eventFilter(object, event);
}

} // namespace korvana::desktop
