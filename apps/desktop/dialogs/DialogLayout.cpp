#include "apps/desktop/dialogs/DialogLayout.h"

#include "apps/desktop/dialogs/ControlField.h"

#include <QGridLayout>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

namespace korvana::desktop {
namespace {

class PageArea final : public QScrollArea {
public:
    explicit PageArea(QWidget* content) {
        setWidget(content);
        setWidgetResizable(true);
        setFrameShape(NoFrame);
        // The page has the background of the dialog.
        setBackgroundRole(QPalette::NoRole);
        viewport()->setAutoFillBackground(false);
        content->setAutoFillBackground(false);
        setFocusPolicy(Qt::NoFocus);
    }
    [[nodiscard]] QSize sizeHint() const override { return fitted(widget()->sizeHint()); }
    [[nodiscard]] QSize minimumSizeHint() const override { return fitted(widget()->minimumSizeHint()); }

private:
    [[nodiscard]] QSize fitted(QSize wanted) const {
        // Three quarters of the screen: the rest of the dialog and the desktop's panels need room too.
        const QSize most = screen()->availableSize() * 3 / 4;
        const int bar = verticalScrollBar()->sizeHint().width();
        if (wanted.height() > most.height()) wanted.rwidth() += bar;
        return wanted.boundedTo(most);
    }
};

/// Buttons one below the other, as wide as the widest, their icons and texts in line.
QVBoxLayout* columnOf(const std::vector<ControlField*>& buttons) {
    auto* column = new QVBoxLayout;
    for (ControlField* button : buttons) {
        button->setStyleSheet(QStringLiteral("QPushButton { text-align: left; padding: 4px 8px; }"));
        column->addWidget(button);
    }
    return column;
}

void addButtons(QGridLayout& grid, int row, const std::vector<ControlField*>& buttons) {
    QVBoxLayout* column = columnOf(buttons);
    auto* line = new QHBoxLayout;
    line->addLayout(column);
    line->addStretch(1);
    grid.addLayout(line, row, 0, 1, 3);
}

/// A list, and the buttons that stand at its side.
void addList(QGridLayout& grid, int row, ControlField* list, const std::vector<ControlField*>& buttons) {
    auto* line = new QHBoxLayout;
    line->addWidget(list, 1);
    QVBoxLayout* column = columnOf(buttons);
    column->addStretch(1);
    // In line with the list, not with its caption.
    if (!captionOf(list->control()).isEmpty())
        column->insertSpacing(0, list->fontMetrics().height() + column->spacing());
    line->addLayout(column);
    grid.addLayout(line, row, 0, 1, 3);
}

std::vector<ControlField*> standingBeside(const ControlField& list,
                                          const std::vector<ControlField*>& fields) {
    std::vector<ControlField*> buttons;
    for (ControlField* field : fields)
        if (field->control().beside == list.control().id) buttons.push_back(field);
    return buttons;
}

} // namespace

void layOutFields(QWidget& onto, const std::vector<ControlField*>& fields) {
    auto* grid = new QGridLayout(&onto);
    // The third column takes the width that captions and numbers do not need.
    grid->setColumnStretch(2, 1);
    int row = 0;
    bool grows = false;
    for (std::size_t i = 0; i < fields.size(); ++row) {
        ControlField* field = fields[i];
        if (field->control().beside != 0) {
            ++i; // placed with its list
            continue;
        }
        if (field->control().kind == ozm::ControlKind::PushButton) {
            std::vector<ControlField*> run;
            for (; i < fields.size() && fields[i]->control().kind == ozm::ControlKind::PushButton; ++i)
                if (fields[i]->control().beside == 0) run.push_back(fields[i]);
            addButtons(*grid, row, run);
            continue;
        }
        if (field->wantsCaption()) {
            auto* caption = new QLabel(captionOf(field->control()), &onto);
            caption->setBuddy(field->focusProxy()); // a field itself takes no focus
            grid->addWidget(caption, row, 0);
            grid->addWidget(field, row, 1, 1, field->growsInWidth() ? 2 : 1);
        } else if (const auto buttons = standingBeside(*field, fields); !buttons.empty()) {
            addList(*grid, row, field, buttons);
        } else {
            grid->addWidget(field, row, 0, 1, 3);
        }
        if (field->growsInHeight()) grid->setRowStretch(row, 1);
        grows = grows || field->growsInHeight();
        ++i;
    }
    if (!grows) grid->setRowStretch(row, 1);
}

QWidget* scrollable(QWidget* content) {
    return new PageArea(content);
}

} // namespace korvana::desktop
