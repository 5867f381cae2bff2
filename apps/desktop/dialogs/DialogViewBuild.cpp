// Builds a dialog: its fields and pages, and the notice at its top.
#include "apps/desktop/dialogs/Callout.h"
#include "apps/desktop/dialogs/DialogLayout.h"
#include "apps/desktop/dialogs/DialogView.h"
#include "apps/desktop/dialogs/EditFields.h"
#include "apps/desktop/dialogs/MakeField.h"

#include <QAccessible>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace korvana::desktop {

ControlField* DialogView::add(const ozm::ControlTemplate& control, int page, QWidget* parent) {
    ControlField* field = makeField(control, *this, parent);
    placed_.push_back({&control, field, page});
    return field;
}

void DialogView::build() {
    using Fields = std::vector<ControlField*>;
    const ozm::DialogTemplate& shape = dialog_->Template();
    const int pages = static_cast<int>(shape.pages.size());

    makeNotice();
    auto* whole = new QGridLayout(this);
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    whole->addWidget(notice_, 0, 0, 1, 2);
    whole->addLayout(left, 1, 0);
    whole->addLayout(right, 1, 1);
    whole->setColumnStretch(0, 1);
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

    // Fields are made in the template's order, which is the tab order.
    bool seenPaged = false;
    for (const ozm::ControlTemplate& control : shape.controls) {
        if (control.hidden) continue;
        bool paged = false;
        for (const int page : control.pages) {
            if (page >= pages) continue;
            const auto at = static_cast<std::size_t>(page);
            onSheets[at].push_back(add(control, page, sheets[at]));
            paged = seenPaged = true;
        }
        if (paged) continue;
        if (control.kind == ozm::ControlKind::PushButton && control.beside == 0) {
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

void DialogView::makeNotice() {
    notice_ = new QLabel(this);
    notice_->setObjectName(QStringLiteral("notice"));
    notice_->setTextFormat(Qt::PlainText);
    notice_->setWordWrap(true);
    notice_->setFrameShape(QFrame::StyledPanel);
    notice_->setMargin(fontMetrics().height() / 3);
    notice_->setAutoFillBackground(true);
    notice_->setBackgroundRole(QPalette::ToolTipBase);
    notice_->setForegroundRole(QPalette::ToolTipText);
    notice_->setMinimumWidth(1); // it takes as many lines as it needs, and never widens a dialog
    notice_->hide();
}

void DialogView::chooseDefaults() {
    auto* ok = dynamic_cast<ButtonField*>(fieldOf(ozm::ControlOk));
    for (const Placed& placed : placed_)
        if (const auto* button = dynamic_cast<ButtonField*>(placed.field))
            // Without an OK button, Enter in a field accepts what was typed and presses nothing.
            button->button()->setAutoDefault(ok != nullptr);
    if (ok != nullptr) ok->button()->setDefault(true);
}

void DialogView::growForNotice(int wanted) {
    const QRect room = screen()->availableGeometry();
    const int most = std::max(room.height() - frameGeometry().height(), 0);
    const int by = std::min(wanted - noticeRoom_, most);
    noticeRoom_ += by;
    layout()->activate(); // updates the window's minimum size
    resize(width(), height() + by);
    const int below = frameGeometry().bottom() - room.bottom();
    if (by > 0 && below > 0) move(x(), std::max(y() - below, room.top()));
}

void DialogView::setNotice(const QString& text) {
    if (notice_->text() == text) return;
    notice_->setText(text);
    notice_->setVisible(!text.isEmpty());
    const auto& grid = static_cast<const QGridLayout&>(*layout());
    const QMargins around = grid.contentsMargins();
    const int height = notice_->heightForWidth(width() - around.left() - around.right());
    if (isVisible() || text.isEmpty()) growForNotice(text.isEmpty() ? 0 : height + grid.verticalSpacing());
    if (text.isEmpty()) return;
    QAccessibleEvent alert(notice_, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void DialogView::takeBackRoom() {
    callout_->hide();
    setNotice({});
}

} // namespace korvana::desktop
