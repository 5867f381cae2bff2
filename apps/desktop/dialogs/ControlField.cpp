#include "apps/desktop/dialogs/ControlField.h"

#include <QLabel>
#include <QVBoxLayout>

namespace korvana::desktop {

ControlField::ControlField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : QWidget(parent), control_(control), host_(host) {
    setObjectName(QStringLiteral("control%1").arg(control.id));
}

void ControlField::fillWith(QWidget* editor, Caption caption) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (caption == Caption::Above && !captionOf(control_).isEmpty()) {
        auto* text = new QLabel(captionOf(control_), this);
        text->setBuddy(editor);
        layout->addWidget(text);
    }
    layout->addWidget(editor);
    setFocusProxy(editor);
    if (editor->accessibleName().isEmpty()) editor->setAccessibleName(plainCaptionOf(control_));
}

bool ControlField::settled() {
    host_.complaintSettled(*this);
    return true;
}

bool ControlField::complain(const QString& reason) {
    host_.complain(*this, reason);
    return false;
}

QString fromView(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString captionOf(const ozm::ControlTemplate& control) {
    return fromView(ozm::ParseControlText(control.text).text).simplified();
}

QString plainCaptionOf(const ozm::ControlTemplate& control) {
    QString text = captionOf(control);
    for (qsizetype at = text.indexOf(QLatin1Char('&')); at >= 0; at = text.indexOf(QLatin1Char('&'), at + 1))
        text.remove(at, 1); // "&&" leaves one, which is then stepped over
    while (text.endsWith(QLatin1Char(':')))
        text.chop(1);
    return text;
}

} // namespace korvana::desktop
