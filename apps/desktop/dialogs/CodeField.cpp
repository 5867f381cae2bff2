#include "apps/desktop/dialogs/CodeField.h"

#include "apps/desktop/text/ElidedLabel.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <QToolButton>

#include <algorithm>
#include <cmath>
#include <limits>

namespace korvana::desktop {
namespace {

/// Gets the codes from its field before it shows them.
class OfferCombo final : public QComboBox {
public:
    explicit OfferCombo(CodeField& field) : QComboBox(&field), field_(field) {}
    void showPopup() override {
        field_.offer();
        QComboBox::showPopup();
    }

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up) field_.offer();
        QComboBox::keyPressEvent(event);
    }
    // Scrolling a page past the field must not change it.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }

private:
    CodeField& field_;
};

bool same(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

CodeField::CodeField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent)
    : CodesOfVariable(control, host, parent), combo_(new OfferCombo(*this)), label_(new ElidedLabel(this)),
      code_(std::numeric_limits<double>::quiet_NaN()), filled_(code_) {
    combo_->setEditable(true);
    combo_->setInsertPolicy(QComboBox::NoInsert);
    combo_->setCompleter(nullptr);
    combo_->lineEdit()->setPlaceholderText(QStringLiteral("code or label"));
    combo_->setMinimumContentsLength(18);
    combo_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo_->setAccessibleName(plainCaptionOf(control));
    combo_->view()->setTextElideMode(Qt::ElideMiddle); // similar labels often differ at their ends
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(combo_);
    layout->addWidget(label_, 1);
    setFocusProxy(combo_);
    QObject::connect(combo_->lineEdit(), &QLineEdit::textEdited, this, [this] {
        edited_ = true;
        label_->setText({});
        settled();
    });
    QObject::connect(combo_->lineEdit(), &QLineEdit::editingFinished, this, [this] { commit(); });
    QObject::connect(combo_, &QComboBox::activated, this, [this](int index) {
        const QVariant code = combo_->itemData(index);
        if (!code.isValid()) return showText();
        edited_ = false;
        if (!this->host().put(*this, code.toDouble()))
            showText();
        else
            settled();
    });
}

void CodeField::showValue(const ozm::ControlValue& value) {
    if (const double* code = std::get_if<double>(&value)) code_ = *code;
    edited_ = false;
    showText();
}

void CodeField::remarkFilled(double code) {
    if (same(code, filled_)) return;
    filled_ = code;
    if (!edited_) showText();
}

void CodeField::offerSwapWith(CodeField& other) {
    swap_ = new QToolButton(this);
    swap_->setObjectName(QStringLiteral("swap"));
    swap_->setText(QStringLiteral("Swap"));
    swap_->setToolTip(QStringLiteral("Exchange this code with the one above"));
    swap_->setAccessibleName(QStringLiteral("Swap the two codes"));
    swap_->setFocusPolicy(Qt::StrongFocus);
    static_cast<QHBoxLayout*>(layout())->insertWidget(1, swap_);
    setTabOrder(combo_, swap_);
    QObject::connect(swap_, &QToolButton::clicked, this, [this, &other] { swapWith(other); });
}

void CodeField::swapWith(CodeField& other) {
    if (!other.commit() || !commit()) return;
    const double mine = code_;
    const double others = other.code_;
    if (host().put(other, mine) && host().put(*this, others)) settled();
}

void CodeField::showText() {
    const QSignalBlocker quiet(combo_);
    combo_->setCurrentIndex(std::isnan(code_) ? -1 : combo_->findData(code_));
    combo_->setEditText(textOf(code_));
    const QString label = labelOf(code_);
    const bool filled = code_ == filled_;
    QString remark;
    if (filled) remark = label.isEmpty() ? QStringLiteral("(filled in)") : QStringLiteral(" (filled in)");
    label_->setText(label, remark);
    label_->setToolTip(filled ? QStringLiteral("The variable has just two codes; change or swap them if the "
                                               "other one is meant.")
                              : QString{});
}

bool CodeField::commit() {
    if (!edited_) return true;
    const QString text = combo_->currentText().trimmed();
    if (host().analysis() == nullptr) return true;
    std::optional<double> code = std::numeric_limits<double>::quiet_NaN();
    if (!text.isEmpty()) code = codeOf(text);
    if (!code) return complain(noCode(text, variable()));
    // Even if the code is the same: from now on it counts as entered by the user.
    if (!std::isnan(*code) || !std::isnan(code_)) {
        if (!host().put(*this, *code)) return false;
    }
    if (same(*code, code_)) showValue(code_);
    return settled();
}

void CodeField::dataChanged() {
    CodesOfVariable::dataChanged();
    clearOffer();
}

void CodeField::clearOffer() {
    // Clearing a combo box clears its text too.
    const QString text = combo_->currentText();
    {
        const QSignalBlocker quiet(combo_);
        combo_->clear();
        combo_->setEditText(text);
    }
    offered_ = false;
    if (!edited_) showText();
}

void CodeField::say(const QString& line) {
    combo_->addItem(line);
    if (auto* model = qobject_cast<QStandardItemModel*>(combo_->model()))
        model->item(combo_->count() - 1)->setEnabled(false);
}

void CodeField::offer() {
    ozm::CAnalysisSupport* analysis = host().analysis();
    if (offered_ || analysis == nullptr) return;
    const QString text = combo_->currentText();
    const QSignalBlocker quiet(combo_);
    combo_->clear();
    if (variable() == 0) {
        say(chooseFirst());
    } else {
        const CodeOffer offer = offeredCodes(*analysis, variable());
        for (const ozm::CodeCount& code : offer.codes)
            combo_->addItem(offerText(textOf(code.code), code), code.code);
        if (offer.failed) say(QStringLiteral("The codes could not be read; type the code"));
        if (!offer.failed && offer.codes.empty()) say(QStringLiteral("No selected case has a value"));
        if (offer.more > 0) say(QStringLiteral("and %1 more; type the code").arg(offer.more));
        offered_ = !offer.failed;
    }
    combo_->setCurrentIndex(std::isnan(code_) ? -1 : combo_->findData(code_));
    combo_->setEditText(text);
    // The list is as wide as its texts, however narrow the field, within the limits of the screen.
    const int wanted = combo_->view()->sizeHintForColumn(0) + combo_->fontMetrics().height() * 2;
    combo_->view()->setMinimumWidth(std::min(wanted, combo_->screen()->availableGeometry().width() * 3 / 4));
}

} // namespace korvana::desktop
