#include "apps/desktop/dialogs/ListField.h"

#include "apps/desktop/dialogs/NeutralIcon.h"
#include "support/CAnalysisSupport.h"

#include <QListWidget>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

namespace korvana::desktop {
namespace {

constexpr int PositionRole = Qt::UserRole; ///< position in the template, -1 for a separator

class EntryDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if (index.data(PositionRole).toInt() >= 0) return QStyledItemDelegate::paint(painter, option, index);
        const int y = option.rect.center().y();
        painter->setPen(option.palette.color(QPalette::Mid));
        painter->drawLine(option.rect.left() + 4, y, option.rect.right() - 4, y);
    }
    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const override {
        const int height = option.fontMetrics.height();
        QSize size = QStyledItemDelegate::sizeHint(option, index);
        size.setHeight(index.data(PositionRole).toInt() >= 0 ? height * 3 / 2 : height / 2);
        return size;
    }
};

} // namespace

ListField::ListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), list_(new QListWidget(this)) {
    list_->setItemDelegate(new EntryDelegate(list_));
    const QString caption = plainCaptionOf(control);
    list_->setAccessibleName(caption.isEmpty() ? QStringLiteral("Choices") : caption);
    list_->setIconSize(QSize(1, 1) * list_->fontMetrics().height());
    fillWith(list_, Caption::Above);
    fill();
    QObject::connect(list_, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (item != nullptr) this->host().put(*this, item->data(PositionRole).toInt());
    });
    QObject::connect(list_, &QListWidget::itemDoubleClicked, this, [this](const QListWidgetItem* item) {
        if (item->data(PositionRole).toInt() >= 0) this->host().press(*this);
    });
}

void ListField::fill() {
    ozm::CAnalysisSupport* analysis = host().analysis();
    if (analysis == nullptr) return;
    bool lineWanted = false;
    int position = 0;
    for (const ozm::ChoiceTemplate& entry : control().choices) {
        const QString text = entry.text != 0
                                 ? QString::fromStdString(analysis->GetResourceString(entry.text)).trimmed()
                                 : QString{};
        if (text.isEmpty()) {
            lineWanted = list_->count() > 0;
        } else {
            if (lineWanted) {
                auto* line = new QListWidgetItem(list_);
                line->setData(PositionRole, -1);
                line->setFlags(Qt::NoItemFlags);
                lineWanted = false;
            }
            auto* item = new QListWidgetItem(text, list_);
            item->setData(PositionRole, position);
            if (entry.icon != 0) item->setIcon(neutralIcon());
        }
        ++position;
    }
    int height = 0;
    for (int row = 0; row < list_->count() && row < 12; ++row)
        height += list_->sizeHintForRow(row);
    list_->setMinimumHeight(height + 2 * list_->frameWidth());
    list_->setMinimumWidth(list_->sizeHintForColumn(0) + 2 * list_->frameWidth() +
                           list_->fontMetrics().averageCharWidth() * 6);
}

void ListField::showValue(const ozm::ControlValue& value) {
    const int* position = std::get_if<int>(&value);
    const QSignalBlocker quiet(list_);
    QListWidgetItem* found = nullptr;
    for (int row = 0; row < list_->count(); ++row)
        if (position != nullptr && list_->item(row)->data(PositionRole).toInt() == *position)
            found = list_->item(row);
    if (found != nullptr)
        list_->setCurrentItem(found);
    else
        list_->setCurrentRow(-1, QItemSelectionModel::Clear);
}

} // namespace korvana::desktop
