#include "apps/desktop/dialogs/LineField.h"

#include "apps/desktop/dialogs/Codes.h"
#include "apps/desktop/dialogs/NameCompletion.h"
#include "apps/desktop/text/ElidedLabel.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace korvana::desktop {
namespace {

/// Fixed decimals; very large numbers with all digits of a double.
QString numberText(double value, int decimals) {
    if (std::isnan(value)) return {};
    return std::abs(value) < 1e15 ? QLocale::c().toString(value, 'f', decimals).remove(QLatin1Char(','))
                                  : QString::number(value, 'g', 17);
}

/// The proportion that a text stands for: 95 and "95 %" are percentages. Other numbers stay as they are;
/// whether they are valid is for the dialog to decide.
struct Share {
    double value = 0.0;
    bool isNumber = false;
    bool inPercent = false;
};

Share shareOf(QString text) {
    Share share;
    share.inPercent = text.endsWith(QLatin1Char('%'));
    if (share.inPercent) text.chop(1);
    share.value = text.trimmed().toDouble(&share.isNumber);
    // 1.5 is hardly meant as a percentage; it is more likely a typing error.
    share.inPercent = share.inPercent || (share.value >= 50.0 && share.value < 100.0);
    if (!share.inPercent) return share;
    // The decimal text is divided, since 99.9 / 100 is not 0.999 in binary.
    bool shifted = false;
    const double value = (text.trimmed() + QStringLiteral("e-2")).toDouble(&shifted);
    share.value = shifted ? value : share.value / 100.0; // not if the text has an exponent itself
    return share;
}

} // namespace

LineField::LineField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), line_(new QLineEdit(this)) {
    const bool isNumber = control.kind == ozm::ControlKind::Real;
    const int columns = isNumber ? 12 : 28;
    line_->setMinimumWidth(line_->fontMetrics().horizontalAdvance(QLatin1Char('0')) * columns);
    if (isNumber) line_->setMaximumWidth(line_->minimumWidth());
    if (control.isShare) {
        note_ = new ElidedLabel(this);
        note_->setObjectName(QStringLiteral("note"));
        putBeside(note_, 1);
    } else if (control.isExpression) {
        putBeside(namesButton(), 0);
    } else {
        fillWith(line_);
    }
    QObject::connect(line_, &QLineEdit::editingFinished, this, [this] { commit(); });
    QObject::connect(line_, &QLineEdit::textEdited, this, [this] {
        if (note_ != nullptr) note_->setText({});
        settled();
    });
    QObject::connect(line_, &QLineEdit::inputRejected, this, [this] {
        // After the edit that was cut has been told, which takes a complaint away.
        QMetaObject::invokeMethod(
            this, [this] { complainOfLength(); }, Qt::QueuedConnection);
    });
}

void LineField::putBeside(QWidget* other, int stretch) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(line_, stretch == 0 ? 1 : 0);
    row->addWidget(other, stretch);
    line_->setAccessibleName(plainCaptionOf(control()));
    setFocusProxy(line_);
}

QToolButton* LineField::namesButton() {
    auto* names = new NameCompletion(
        line_, [this] { return host().analysis(); }, control().choices);
    auto* button = new QToolButton(this);
    button->setObjectName(QStringLiteral("variables"));
    button->setArrowType(Qt::DownArrow);
    button->setAccessibleName(QStringLiteral("Variables"));
    button->setToolTip(QStringLiteral("Inserts a variable (Ctrl+Space)"));
    button->setFocusPolicy(Qt::NoFocus); // the line has the same by a key
    QObject::connect(button, &QToolButton::clicked, this, [this, names] {
        line_->setFocus(Qt::OtherFocusReason);
        line_->deselect(); // what was selected as the focus came is not to be replaced
        names->offer();
    });
    return button;
}

void LineField::complainOfLength() {
    const int most = this->control().most;
    if (most > 0 && line_->text().size() >= most)
        complain(QStringLiteral("There is room for %1 characters here; what is beyond them was left out.")
                     .arg(most));
}

void LineField::showValue(const ozm::ControlValue& value) {
    QString text;
    if (const double* number = std::get_if<double>(&value))
        text = numberText(*number, host().decimals(*this, *number));
    if (const auto* words = std::get_if<std::string>(&value)) text = QString::fromStdString(*words);
    // A text from elsewhere may be longer than people can type; it is shown whole.
    // A line that is given its length again moves its cursor to the end.
    const int room = std::max(control().most, static_cast<int>(text.size()));
    if (control().most > 0 && line_->maxLength() != room) line_->setMaxLength(room);
    if (line_->text() != text) line_->setText(text);
    line_->setModified(false);
}

bool LineField::hasPendingEdit() const {
    return line_->isModified();
}

bool LineField::commit() {
    // What was not edited stays as it is in the model: the text may show fewer digits.
    if (!line_->isModified()) return true;
    if (control().kind == ozm::ControlKind::Real) return commitNumber();
    return host().put(*this, line_->text().toStdString()) && settled();
}

bool LineField::commitNumber() {
    const QString text = line_->text().trimmed();
    Share number;
    if (control().isShare)
        number = shareOf(text);
    else
        number.value = text.toDouble(&number.isNumber);
    if (text.isEmpty()) return complain(QStringLiteral("Enter a number here."));
    if (!number.isNumber || !std::isfinite(number.value))
        return complain(
            QStringLiteral("'%1' is not a number; write it with a decimal point, as in 0.95.").arg(text));
    if (!host().put(*this, number.value)) return false;
    if (number.inPercent)
        note_->setText(QStringLiteral("%1 was read as %2.").arg(text, codeText(number.value)));
    return settled();
}

} // namespace korvana::desktop
