#include "apps/desktop/dialogs/EditFields.h"

#include "apps/desktop/dialogs/Codes.h"
#include "apps/desktop/dialogs/NeutralIcon.h"
#include "apps/desktop/text/ElidedLabel.h"
#include "apps/desktop/text/FixedFont.h"
#include "support/CAnalysisSupport.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <limits>

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

/// Makes room for some lines and columns of text, in any font.
void askForRoom(QPlainTextEdit* text, int columns, int lines) {
    const QFontMetrics metrics(text->font());
    const int around = 2 * (text->frameWidth() + static_cast<int>(text->document()->documentMargin()));
    text->setMinimumHeight(metrics.lineSpacing() * lines + around);
    text->setMinimumWidth(metrics.horizontalAdvance(QString(columns, QLatin1Char('0'))) + around +
                          metrics.height()); // a scroll bar's worth
}

/// Its arrows stop at the ends of the control's range; anything can be typed, and errors are shown.
class RangedBox : public QSpinBox {
public:
    RangedBox(const ozm::NumberRange& range, QWidget* parent) : QSpinBox(parent), range_(range) {}

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override {
        StepEnabled steps = StepNone;
        if (ozm::Contains(range_, value() + 1.0) || value() < range_.least) steps |= StepUpEnabled;
        if (ozm::Contains(range_, value() - 1.0) || value() > range_.greatest) steps |= StepDownEnabled;
        return steps;
    }
    /// With Ctrl, Page Up and Page Down turn the pages of the dialog.
    void keyPressEvent(QKeyEvent* event) override {
        const bool pages = event->key() == Qt::Key_PageUp || event->key() == Qt::Key_PageDown;
        if (pages && event->modifiers().testFlag(Qt::ControlModifier)) return event->ignore();
        QSpinBox::keyPressEvent(event);
    }

private:
    const ozm::NumberRange& range_;
};

} // namespace

ButtonField::ButtonField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), button_(new QPushButton(captionOf(control), this)) {
    const ozm::ControlText text = ozm::ParseControlText(control.text);
    if (text.icon != 0 || text.iconLetter != '\0') button_->setIcon(neutralIcon());
    fillWith(button_);
    QObject::connect(button_, &QPushButton::clicked, this, [this] { this->host().press(*this); });
}

CheckField::CheckField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), box_(new QCheckBox(captionOf(control), this)) {
    fillWith(box_);
    QObject::connect(box_, &QCheckBox::toggled, this, [this](bool on) { this->host().put(*this, on); });
}

void CheckField::showValue(const ozm::ControlValue& value) {
    const QSignalBlocker quiet(box_);
    if (const bool* on = std::get_if<bool>(&value)) box_->setChecked(*on);
}

RadioField::RadioField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), group_(new QButtonGroup(this)) {
    auto* frame = new QGroupBox(captionOf(control), this);
    auto* layout = new QVBoxLayout(frame);
    fillWith(frame);
    ozm::CAnalysisSupport* analysis = host.analysis();
    int choice = 0;
    for (const ozm::ChoiceTemplate& entry : control.choices) {
        ++choice;
        if (entry.text == 0 || analysis == nullptr) continue;
        auto* button = new QRadioButton(
            QString::fromStdString(analysis->GetResourceString(entry.text)).trimmed(), frame);
        layout->addWidget(button);
        group_->addButton(button, choice);
        if (choice == 1) setFocusProxy(button); // not of the frame, which would then look focused, too
    }
    QObject::connect(group_, &QButtonGroup::idToggled, this, [this](int id, bool on) {
        if (on) this->host().put(*this, id);
    });
}

void RadioField::showValue(const ozm::ControlValue& value) {
    const QSignalBlocker quiet(group_);
    const int* choice = std::get_if<int>(&value);
    QAbstractButton* button = choice != nullptr ? group_->button(*choice) : nullptr;
    if (button != nullptr) button->setChecked(true);
    // So that Tab goes to the selected choice, and arrows continue from there.
    if (button != nullptr) setFocusProxy(button);
}

IntegerField::IntegerField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), box_(new RangedBox(control.range, this)) {
    box_->setLocale(QLocale::c());
    box_->setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    box_->setKeyboardTracking(false);
    fillWith(box_);
    QObject::connect(box_, &QSpinBox::valueChanged, this, [this] { commit(); });
}

void IntegerField::showValue(const ozm::ControlValue& value) {
    const QSignalBlocker quiet(box_);
    if (const int* number = std::get_if<int>(&value)) box_->setValue(shown_ = *number);
}

bool IntegerField::hasPendingEdit() const {
    return box_->value() != shown_ || box_->text() != QString::number(shown_);
}

bool IntegerField::commit() {
    {
        const QSignalBlocker quiet(box_);
        box_->interpretText();
    }
    if (box_->value() == shown_) return settled();
    return host().put(*this, box_->value()) && settled();
}

LineField::LineField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), line_(new QLineEdit(this)) {
    const bool isNumber = control.kind == ozm::ControlKind::Real;
    const int columns = isNumber ? 12 : 28;
    line_->setMinimumWidth(line_->fontMetrics().horizontalAdvance(QLatin1Char('0')) * columns);
    if (isNumber) line_->setMaximumWidth(line_->minimumWidth());
    if (control.isShare) {
        note_ = new ElidedLabel(this);
        note_->setObjectName(QStringLiteral("note"));
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        row->addWidget(line_);
        row->addWidget(note_, 1);
        line_->setAccessibleName(plainCaptionOf(control));
        setFocusProxy(line_);
    } else {
        fillWith(line_);
    }
    QObject::connect(line_, &QLineEdit::editingFinished, this, [this] { commit(); });
    QObject::connect(line_, &QLineEdit::textEdited, this, [this] {
        if (note_ != nullptr) note_->setText({});
        settled();
    });
}

void LineField::showValue(const ozm::ControlValue& value) {
    QString text;
    if (const double* number = std::get_if<double>(&value))
        text = numberText(*number, host().decimals(*this, *number));
    if (const auto* words = std::get_if<std::string>(&value)) text = QString::fromStdString(*words);
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

TextListField::TextListField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), text_(new QPlainTextEdit(this)) {
    text_->setTabChangesFocus(true);
    text_->setPlaceholderText(QStringLiteral("One per line"));
    askForRoom(text_, 30, 4);
    fillWith(text_, Caption::Above);
    text_->installEventFilter(this);
    QObject::connect(text_, &QPlainTextEdit::textChanged, this, [this] { settled(); });
}

void TextListField::showValue(const ozm::ControlValue& value) {
    const QSignalBlocker quiet(text_);
    QStringList lines;
    if (const auto* texts = std::get_if<std::vector<std::string>>(&value))
        for (const std::string& text : *texts)
            lines.append(QString::fromStdString(text));
    const QString whole = lines.join(QLatin1Char('\n'));
    if (text_->toPlainText() != whole) text_->setPlainText(whole);
    text_->document()->setModified(false);
}

bool TextListField::hasPendingEdit() const {
    return text_->document()->isModified();
}

bool TextListField::commit() {
    if (!hasPendingEdit()) return true;
    std::vector<std::string> texts;
    for (const QString& line : text_->toPlainText().split(QLatin1Char('\n')))
        if (!line.trimmed().isEmpty()) texts.push_back(line.trimmed().toStdString());
    return host().put(*this, std::move(texts)) && settled();
}

bool TextListField::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut) commit();
    return ControlField::eventFilter(watched, event);
}

SummaryField::SummaryField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : ControlField(control, host, parent), text_(new QPlainTextEdit(this)) {
    text_->setReadOnly(true);
    text_->setTabChangesFocus(true);
    text_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // lines break
    text_->setFont(fixedFont());
    text_->setAccessibleName(plainCaptionOf(control).isEmpty() ? QStringLiteral("Summary")
                                                               : plainCaptionOf(control));
    fillWith(text_, Caption::Above);
}

void SummaryField::showValue(const ozm::ControlValue& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        text_->setPlainText(QString::fromStdString(*text));
    // All of it is visible at once, unless it is very long: as wide as its lines, of which the longest break.
    const QStringList lines = text_->toPlainText().split(QLatin1Char('\n'));
    qsizetype columns = 58;
    for (const QString& line : lines)
        columns = std::clamp(line.size(), columns, qsizetype{85});
    qsizetype rows = 1;
    for (const QString& line : lines)
        rows += 1 + line.size() / (columns + 1) * 10 / 9; // breaking at words takes a little more
    // One more column, as that of a font need not be a whole number of pixels wide.
    askForRoom(text_, static_cast<int>(columns) + 1,
               static_cast<int>(std::clamp(rows, qsizetype{9}, qsizetype{16})));
}

} // namespace korvana::desktop
