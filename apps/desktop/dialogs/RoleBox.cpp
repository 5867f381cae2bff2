#include "apps/desktop/dialogs/RoleBox.h"

#include "apps/desktop/dialogs/ControlField.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>

namespace korvana::desktop {
namespace {

/// "1 to 6 variables", "up to 3 variables (may stay empty)".
QString limitsText(const ozm::RoleTemplate& role) {
    const QString noun = role.maximum == 1 ? QStringLiteral("variable") : QStringLiteral("variables");
    const QString optional = role.minimum == 0 ? QStringLiteral(" (may stay empty)") : QString{};
    if (role.minimum == role.maximum || role.maximum == 1)
        return QStringLiteral("%1 %2%3").arg(role.maximum).arg(noun, optional);
    if (role.minimum == 0) return QStringLiteral("up to %1 %2%3").arg(role.maximum).arg(noun, optional);
    return QStringLiteral("%1 to %2 %3").arg(role.minimum).arg(role.maximum).arg(noun);
}

} // namespace

RoleBox::RoleBox(const ozm::RoleTemplate& role, int place, const std::vector<KnownVariable>& known,
                 QWidget* parent)
    : QObject(parent), role_(role), prompt_(fromView(role.prompt)), caption_(new QLabel(parent)),
      arrow_(new QToolButton(parent)), list_(new DragList(parent)),
      model_(new VariableModel(known, place, this)) {
    const QString limits = limitsText(role);
    caption_->setText(prompt_);
    caption_->setBuddy(list_);
    QFont bold = caption_->font();
    bold.setBold(true);
    caption_->setMinimumWidth(QFontMetrics(bold).horizontalAdvance(prompt_)); // bold when it is the next box
    list_->setModel(model_);
    list_->setObjectName(QStringLiteral("role%1").arg(place));
    list_->setPlaceholder(limits);
    list_->setToolTip(limits);
    list_->setAccessibleName(prompt_);
    list_->setAccessibleDescription(limits);
    arrow_->setObjectName(QStringLiteral("arrow%1").arg(place));
    arrow_->setFocusPolicy(Qt::StrongFocus);
    setFilling(true);

    const int line = list_->fontMetrics().height() * 5 / 4;
    const int lines = takesOne() ? 1 : 3;
    list_->setMinimumHeight(line * lines + 2 * (list_->frameWidth() + DragList::ringRoom));
    if (takesOne()) {
        list_->setMaximumHeight(list_->minimumHeight());
        list_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    list_->setMinimumWidth(list_->fontMetrics().averageCharWidth() * 26);
}

void RoleBox::layOut(QGridLayout& grid, int row, int column) const {
    grid.addWidget(caption_, row, column + 1);
    grid.addWidget(arrow_, row + 1, column, Qt::AlignTop);
    grid.addWidget(list_, row + 1, column + 1);
    grid.setRowStretch(row + 1, takesOne() ? 0 : 1);
}

void RoleBox::setNumbers(const std::vector<int>& numbers) {
    if (numbers != model_->numbers()) model_->setNumbers(numbers);
}

void RoleBox::setFilling(bool filling) {
    arrow_->setArrowType(filling ? Qt::RightArrow : Qt::LeftArrow);
    const QString what =
        (filling ? QStringLiteral("Add to '%1'") : QStringLiteral("Remove from '%1'")).arg(prompt_);
    arrow_->setToolTip(what);
    arrow_->setAccessibleName(what);
}

void RoleBox::setNext(bool next) {
    QFont font = caption_->font();
    font.setBold(next);
    caption_->setFont(font);
}

} // namespace korvana::desktop
