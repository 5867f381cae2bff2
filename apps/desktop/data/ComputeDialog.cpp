#include "apps/desktop/data/ComputeDialog.h"

#include "apps/desktop/WaitCursor.h"
#include "apps/desktop/data/ConditionEdit.h"
#include "host/data/Expression.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <exception>
#include <vector>

namespace korvana::desktop {
namespace {

/// What an expression gives for the first cases: "2.37, ., 1.2, ...".
QString firstValues(const Expression& expression, const DataSet& data) {
    constexpr int most = 8;
    std::vector<double> values(static_cast<std::size_t>(std::min(data.caseCount(), most)));
    expression.evaluate(CaseInputs(expression, data).from(0), values);
    QStringList texts;
    for (const double value : values)
        texts += std::isnan(value) ? QStringLiteral(".") : QLocale::c().toString(value, 'g', 6);
    if (data.caseCount() > most) texts += QStringLiteral("...");
    return texts.join(QStringLiteral(", "));
}

} // namespace

ComputeDialog::ComputeDialog(ActiveData& active, QWidget* parent)
    : ExpressionDialog(active, tr("Compute Variable"), parent), name_(new QLineEdit(this)) {
    name_->setObjectName(QStringLiteral("name"));
    name_->setPlaceholderText(tr("for example: months"));
    expression_->setAccessibleName(tr("Expression"));
    expression_->setPlaceholderText(tr("for example: days / 30.4375, or: status = 2 or status = 3"));
    auto* fields = new QFormLayout;
    fields->addRow(tr("&Name of the new variable"), name_);
    fields->addRow(tr("&Expression"), expression_);
    connect(name_, &QLineEdit::textChanged, this, &ComputeDialog::lookSoon);
    layOut(fields);
    QWidget::setTabOrder(name_, expression_);
    name_->setFocus();
    look();
}

Definition ComputeDialog::definition() const {
    return {name_->text().trimmed().toStdString(), expression_->toPlainText().trimmed().toStdString()};
}

void ComputeDialog::look() {
    lookedAt();
    say(tr("True counts as 1, false as 0; what cannot be computed is missing."));
    const Definition wanted = definition();
    try {
        if (!wanted.name.empty()) requireNewName(data_.dataSet(), wanted.name);
        if (wanted.expression.empty()) return;
        const Expression expression(expression_->expression(), data_.dataSet());
        say(tr("The first cases: %1").arg(firstValues(expression, data_.dataSet())));
    } catch (const std::exception& error) {
        sayFault(error);
    }
}

void ComputeDialog::accept() {
    look();
    const Definition wanted = definition();
    if (wanted.name.empty()) {
        say(tr("The new variable needs a name."), true);
        name_->setFocus();
        return;
    }
    if (wanted.expression.empty()) {
        say(tr("The new variable needs an expression."), true);
        expression_->setFocus();
        return;
    }
    try {
        const WaitCursor cursor;
        data_.define(wanted);
    } catch (const ExpressionError&) { // shown already
        goToFault();
        return;
    } catch (const std::exception& error) {
        sayFault(error);
        name_->setFocus();
        return;
    }
    QDialog::accept();
}

} // namespace korvana::desktop
