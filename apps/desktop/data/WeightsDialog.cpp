#include "apps/desktop/data/WeightsDialog.h"

#include "apps/desktop/data/GridText.h"
#include "apps/desktop/data/VariableChooser.h"
#include "apps/desktop/text/WrappedLabel.h"
#include "host/data/CaseWeights.h"

#include <QDialogButtonBox>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <exception>

namespace korvana::desktop {

WeightsDialog::WeightsDialog(ActiveData& active, QWidget* parent)
    : QDialog(parent), data_(active),
      none_(new QRadioButton(tr("&No weights: every case counts once"), this)),
      byVariable_(new QRadioButton(tr("&Weight cases by a numeric variable:"), this)),
      variables_(new VariableChooser(active.dataSet(), true, this)), effect_(new WrappedLabel(this)) {
    setWindowTitle(tr("Case Weights"));
    effect_->setMinimumHeight(fontMetrics().lineSpacing() * 2);
    effect_->setAlignment(Qt::AlignLeft | Qt::AlignTop);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &WeightsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &WeightsDialog::reject);
    connect(byVariable_, &QRadioButton::toggled, this, [this](bool on) {
        if (on && variables_->current() < 0)
            variables_->list()->setCurrentIndex(variables_->list()->model()->index(0, 0));
        showEffect();
    });
    connect(variables_, &VariableChooser::currentChanged, this, [this](int variable0) {
        if (variable0 >= 0) byVariable_->setChecked(true);
        showEffect();
    });
    connect(variables_, &VariableChooser::chosen, this, [this] {
        byVariable_->setChecked(true);
        accept();
    });

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(none_);
    layout->addWidget(byVariable_);
    layout->addWidget(variables_, 1);
    layout->addWidget(effect_);
    layout->addWidget(buttons);
    resize(fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 24);

    none_->setChecked(true);
    if (data_.weightVariable() > 0) {
        variables_->setCurrent(data_.weightVariable() - 1);
        byVariable_->setChecked(true);
    }
    byVariable_->setEnabled(variables_->count() > 0);
    variables_->setEnabled(variables_->count() > 0);
    (data_.weightVariable() > 0 ? byVariable_ : none_)->setFocus();
    showEffect();
}

void WeightsDialog::showEffect() {
    const int variable0 = variables_->current();
    showAsError(*effect_, false);
    if (variables_->count() == 0) {
        effect_->setText(tr("The data have no numeric variable."));
    } else if (!byVariable_->isChecked() || variable0 < 0) {
        effect_->setText({});
    } else {
        const QString name = shown(data_.dataSet().variable(variable0).name);
        QString text = tr("%1, weighted by %2.").arg(casesText(data_.selectedCount()), name);
        const CaseWeights weights =
            resolveWeights(data_.dataSet(), data_.dataSet().variable(variable0).name, data_.mask());
        if (weights.missingCount > 0)
            text += tr(" %1 without a weight.").arg(casesText(weights.missingCount));
        if (weights.notPositiveCount > 0)
            text += tr(" %1 with a weight of zero or less.").arg(casesText(weights.notPositiveCount));
        effect_->setText(text);
    }
}

void WeightsDialog::accept() {
    const int variable0 = byVariable_->isChecked() ? variables_->current() : -1;
    try {
        if (byVariable_->isChecked() && variable0 < 0) {
            effect_->setText(tr("No variable is chosen; choose one from the list, or no weights."));
            showAsError(*effect_, true);
            variables_->setFocus();
            return;
        }
        data_.weightBy(variable0 < 0 ? std::string() : data_.dataSet().variable(variable0).name);
    } catch (const std::exception& error) {
        effect_->setText(shown(error.what()));
        showAsError(*effect_, true);
        return;
    }
    QDialog::accept();
}

} // namespace korvana::desktop
