#include "apps/desktop/data/ComputeDialog.h"

#include "apps/desktop/WaitCursor.h"
#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/ExpressionPane.h"
#include "apps/desktop/data/GridText.h"
#include "host/data/Expression.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <exception>

namespace korvana::desktop {
namespace {

/// What an expression gives for the first cases: "2.37, ., 1.2, ...".
QString firstValues(const Expression& expression, const DataSet& data) {
    constexpr int most = 8;
    CaseValues values(expression, data);
    QStringList texts;
    for (int i = 0; i < std::min(data.caseCount(), most); ++i) {
        const auto value = expression.evaluate(values.take(static_cast<std::size_t>(i)));
        texts += value ? QLocale::c().toString(*value, 'g', 6) : QStringLiteral(".");
    }
    if (data.caseCount() > most) texts += QStringLiteral("...");
    return texts.join(QStringLiteral(", "));
}

} // namespace

ComputeDialog::ComputeDialog(ActiveData& active, QWidget* parent)
    : QDialog(parent), data_(active), name_(new QLineEdit(this)), expression_(new ConditionEdit(this)),
      outcome_(new QLabel(this)) {
    setWindowTitle(tr("Compute Variable"));
    name_->setObjectName(QStringLiteral("name"));
    name_->setPlaceholderText(tr("for example: months"));
    expression_->setAccessibleName(tr("Expression"));
    expression_->setPlaceholderText(tr("for example: days / 30.4375, or: status = 2 or status = 3"));
    outcome_->setObjectName(QStringLiteral("outcome"));
    outcome_->setWordWrap(true);
    outcome_->setTextFormat(Qt::PlainText);
    outcome_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    outcome_->setMinimumHeight(fontMetrics().lineSpacing() * 3);
    auto* fields = new QFormLayout;
    fields->addRow(tr("&Name of the new variable"), name_);
    fields->addRow(tr("&Expression"), expression_);
    auto* pane = new ExpressionPane(active.dataSet(), *expression_, this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &ComputeDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &ComputeDialog::reject);
    const auto changed = [this] {
        expression_->clearMark();
        pause_.start();
    };
    connect(name_, &QLineEdit::textChanged, this, changed);
    connect(expression_, &ConditionEdit::textChanged, this, changed);
    pause_.setSingleShot(true);
    pause_.setInterval(250);
    connect(&pause_, &QTimer::timeout, this, &ComputeDialog::look);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addWidget(outcome_);
    layout->addWidget(pane, 1);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 32);
    name_->setFocus();
    look();
}

Definition ComputeDialog::definition() const {
    return {name_->text().trimmed().toStdString(), expression_->toPlainText().trimmed().toStdString()};
}

void ComputeDialog::showFault(const QString& text) {
    outcome_->setText(text);
    showAsError(*outcome_, true);
}

void ComputeDialog::look() {
    pause_.stop();
    showAsError(*outcome_, false);
    outcome_->setText(tr("True counts as 1, false as 0; what cannot be computed is missing."));
    const Definition wanted = definition();
    try {
        if (!wanted.name.empty()) requireNewName(data_.dataSet(), wanted.name);
        if (wanted.expression.empty()) return;
        const Expression expression(expression_->expression(), data_.dataSet());
        outcome_->setText(tr("The first cases: %1").arg(firstValues(expression, data_.dataSet())));
    } catch (const ExpressionError& error) {
        expression_->mark(error.position());
        showFault(shown(error.what()));
    } catch (const std::exception& error) {
        showFault(shown(error.what()));
    }
}

void ComputeDialog::accept() {
    look();
    const Definition wanted = definition();
    if (wanted.name.empty()) {
        showFault(tr("The new variable needs a name."));
        name_->setFocus();
        return;
    }
    if (wanted.expression.empty()) {
        showFault(tr("What the variable is to be is missing; write an expression."));
        expression_->setFocus();
        return;
    }
    try {
        const WaitCursor cursor;
        data_.define(wanted);
    } catch (const ExpressionError&) { // shown already
        expression_->goToMark();
        expression_->setFocus();
        return;
    } catch (const std::exception& error) {
        showFault(shown(error.what()));
        name_->setFocus();
        return;
    }
    QDialog::accept();
}

} // namespace korvana::desktop
