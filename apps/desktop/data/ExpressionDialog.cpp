#include "apps/desktop/data/ExpressionDialog.h"

#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/ExpressionPane.h"
#include "apps/desktop/data/GridText.h"
#include "apps/desktop/text/WrappedLabel.h"
#include "host/data/Expression.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace korvana::desktop {

ExpressionDialog::ExpressionDialog(ActiveData& active, const QString& title, QWidget* parent)
    : QDialog(parent), data_(active), expression_(new ConditionEdit(this)),
      pane_(new ExpressionPane(active.dataSet(), *expression_, this)),
      buttons_(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this)),
      outcome_(new WrappedLabel(this)) {
    setWindowTitle(title);
    outcome_->setObjectName(QStringLiteral("outcome"));
    outcome_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    outcome_->setMinimumHeight(fontMetrics().lineSpacing() * 3);
    buttons_->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(expression_, &ConditionEdit::textChanged, this, &ExpressionDialog::lookSoon);
    pause_.setSingleShot(true);
    pause_.setInterval(250);
    connect(&pause_, &QTimer::timeout, this, [this] { look(); });
}

void ExpressionDialog::layOut(QLayout* fields) {
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(outcome_);
    layout->addWidget(pane_, 1);
    layout->addWidget(buttons_);
    resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 32);
}

void ExpressionDialog::lookSoon() {
    expression_->clearMark();
    pause_.start();
}

void ExpressionDialog::say(const QString& text, bool error) {
    outcome_->setText(text);
    showAsError(*outcome_, error);
}

void ExpressionDialog::sayFault(const std::exception& error) {
    if (const auto* placed = dynamic_cast<const ExpressionError*>(&error))
        expression_->mark(placed->position());
    say(shown(error.what()), true);
}

void ExpressionDialog::goToFault() {
    expression_->goToMark();
    expression_->setFocus();
}

} // namespace korvana::desktop
