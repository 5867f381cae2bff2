#include "apps/desktop/window/Leaving.h"

#include "apps/desktop/results/Workbook.h"
#include "apps/desktop/text/BoxTexts.h"

#include <QCoreApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>

namespace korvana::desktop {
namespace {

QString say(const char* text) {
    return QCoreApplication::translate("Leaving", text);
}

/// What is lost with the data, and why.
QString lostText(const DataEdits& edits) {
    constexpr int mostNamed = 5;
    const auto count = static_cast<int>(edits.computed.size());
    QString names = edits.computed.mid(0, mostNamed).join(QStringLiteral(", "));
    if (count > mostNamed) names += QStringLiteral(", ...");
    QStringList lost;
    if (edits.labels) lost += say("labels or codes that you edited");
    if (count == 1) lost += say("one variable that you computed (%1)").arg(names);
    if (count > 1) lost += say("%1 variables that you computed (%2)").arg(QString::number(count), names);
    QString text = lost.join(say(" and "));
    text[0] = text[0].toUpper();
    return text + (!edits.labels && count == 1
                       ? say(" exists only in this session; it is not saved in any file.")
                       : say(" exist only in this session; they are not saved in any file."));
}

QMessageBox::StandardButton ask(QWidget& window, const QString& question, const QString& why,
                                QMessageBox::StandardButtons buttons, const QString& discard) {
    QMessageBox box(QMessageBox::Warning, say("Korvana"), question, buttons, &window);
    box.setInformativeText(why);
    if (auto* save = box.button(QMessageBox::Save)) save->setText(say("&Export Results..."));
    box.button(QMessageBox::Discard)->setText(discard);
    box.setDefaultButton(buttons.testFlag(QMessageBox::Save) ? QMessageBox::Save : QMessageBox::Cancel);
    return static_cast<QMessageBox::StandardButton>(showBox(box));
}

} // namespace

bool mayClose(QWidget& window, Workbook& workbook, const DataEdits& edits) {
    for (;;) {
        const int unsaved = workbook.unsaved();
        if (unsaved == 0 && !edits.any()) return true;
        QStringList why;
        if (unsaved == 1) why += say("One output was not exported yet.");
        if (unsaved > 1) why += say("%1 outputs were not exported yet.").arg(unsaved);
        if (edits.any()) why += lostText(edits);
        QMessageBox::StandardButtons buttons = QMessageBox::Discard | QMessageBox::Cancel;
        if (unsaved > 0) buttons |= QMessageBox::Save;
        const auto answer = ask(window, say("Close, and lose what is not saved?"),
                                why.join(QLatin1Char('\n')), buttons, say("&Close without Saving"));
        if (answer == QMessageBox::Discard) return true;
        if (answer != QMessageBox::Save || !workbook.exportRuns(true)) return false;
        if (workbook.unsaved() == 0) return true;
    }
}

bool mayReplaceData(QWidget& window, const QString& dataName, const DataEdits& edits) {
    return !edits.any() ||
           ask(window, say("Open other data, and lose the edits of %1?").arg(dataName), lostText(edits),
               QMessageBox::Discard | QMessageBox::Cancel, say("&Open without Them")) == QMessageBox::Discard;
}

} // namespace korvana::desktop
