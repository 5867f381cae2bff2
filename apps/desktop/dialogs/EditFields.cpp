#include "apps/desktop/dialogs/EditFields.h"

#include "apps/desktop/dialogs/NeutralIcon.h"
#include "apps/desktop/text/FixedFont.h"
#include "support/CAnalysisSupport.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace korvana::desktop {
namespace {

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
