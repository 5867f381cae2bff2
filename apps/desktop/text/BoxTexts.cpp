#include "apps/desktop/text/BoxTexts.h"

#include "apps/desktop/text/WrappedLabel.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>

namespace korvana::desktop {
namespace {

constexpr int longest = 60; // characters of a word; shorter ones fit every box

/// Qt finds none where another button stands beside a single OK, and then the box cannot be closed.
QAbstractButton* buttonOfEscape(const QMessageBox& box) {
    for (const auto role : {QMessageBox::RejectRole, QMessageBox::NoRole})
        for (QAbstractButton* button : box.buttons())
            if (box.buttonRole(button) == role) return button;
    return box.button(QMessageBox::Ok);
}

void quoteSafely(QMessageBox& box) {
    box.setText(breakable(box.text(), longest));
    if (!box.informativeText().isEmpty()) box.setInformativeText(breakable(box.informativeText(), longest));
    for (QLabel* label : box.findChildren<QLabel*>())
        label->setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // What is copied out of the box is the text that was given.
    QClipboard* clipboard = QGuiApplication::clipboard();
    QObject::connect(clipboard, &QClipboard::changed, &box, [&box, clipboard](QClipboard::Mode mode) {
        const QString copied = clipboard->text(mode);
        const bool fromHere = box.text().contains(copied) || box.informativeText().contains(copied);
        if (fromHere && copied != unbroken(copied)) clipboard->setText(unbroken(copied), mode);
    });
}

} // namespace

int showBox(QMessageBox& box) {
    if (box.buttons().isEmpty()) box.addButton(QMessageBox::Ok);
    quoteSafely(box);
    box.setEscapeButton(buttonOfEscape(box));
    return box.exec();
}

} // namespace korvana::desktop
