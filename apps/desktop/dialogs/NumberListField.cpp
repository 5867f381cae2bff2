#include "apps/desktop/dialogs/NumberListField.h"

#include "apps/desktop/dialogs/Codes.h"

#include <QLineEdit>
#include <QRegularExpression>
#include <QStringList>

#include <cmath>
#include <limits>

namespace korvana::desktop {
namespace {

/// What stands for a number that is not given.
const QString missing = QStringLiteral(".");

} // namespace

NumberListField::NumberListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), line_(new QLineEdit(this)) {
    line_->setPlaceholderText(QStringLiteral("numbers, separated by blanks or commas"));
    const QFontMetrics metrics = line_->fontMetrics();
    line_->setMinimumWidth(metrics.horizontalAdvance(line_->placeholderText()) + 2 * metrics.height());
    fillWith(line_);
    QObject::connect(line_, &QLineEdit::editingFinished, this, [this] { commit(); });
    QObject::connect(line_, &QLineEdit::textEdited, this, [this] { settled(); });
}

void NumberListField::showValue(const ozm::ControlValue& value) {
    QStringList texts;
    if (const auto* numbers = std::get_if<std::vector<double>>(&value))
        for (const double number : *numbers)
            texts.append(std::isnan(number) ? missing : codeText(number));
    line_->setText(texts.join(QLatin1Char(' ')));
    line_->setModified(false);
    line_->setCursorPosition(0); // of many numbers, the first are seen
}

bool NumberListField::hasPendingEdit() const {
    return line_->isModified();
}

bool NumberListField::commit() {
    if (!line_->isModified()) return true;
    static const QRegularExpression between(QStringLiteral("[\\s,;]+"));
    std::vector<double> numbers;
    for (const QString& part : line_->text().split(between, Qt::SkipEmptyParts)) {
        bool isNumber = false;
        const bool isMissing = control().mayMiss && part == missing;
        const double number = isMissing ? std::numeric_limits<double>::quiet_NaN() : part.toDouble(&isNumber);
        if (!isMissing && (!isNumber || !std::isfinite(number)))
            return complain(
                QStringLiteral("'%1' is not a number; write it with a decimal point, as in 0.95.").arg(part));
        numbers.push_back(number);
    }
    return host().put(*this, std::move(numbers)) && settled();
}

} // namespace korvana::desktop
