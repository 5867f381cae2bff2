#include "apps/desktop/data/SelectionDialog.h"

#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/ExpressionPane.h"
#include "apps/desktop/data/GridText.h"
#include "host/data/NumberText.h"

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <exception>

namespace korvana::desktop {
namespace {

constexpr std::size_t piece = 2'000; // cases between two looks at the clock

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

SelectionDialog::SelectionDialog(ActiveData& active, QWidget* parent)
    : QDialog(parent), data_(active), condition_(new ConditionEdit(this)), outcome_(new QLabel(this)) {
    setWindowTitle(tr("Select Cases"));
    auto* prompt = new QLabel(tr("&Cases take part that satisfy this condition (empty: all cases)"), this);
    prompt->setBuddy(condition_);
    prompt->setWordWrap(true);
    condition_->setAccessibleName(tr("Condition"));
    condition_->setPlaceholderText(tr("for example: age >= 60 and not missing(stage)"));
    outcome_->setWordWrap(true);
    outcome_->setTextFormat(Qt::PlainText);
    outcome_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    outcome_->setMinimumHeight(fontMetrics().lineSpacing() * 3);

    auto* pane = new ExpressionPane(active.dataSet(), *condition_, this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* all = buttons->addButton(tr("&All Cases"), QDialogButtonBox::ResetRole);
    all->setAutoDefault(false);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    connect(all, &QPushButton::clicked, this, [this] {
        condition_->setPlainText({});
        condition_->setFocus();
    });
    connect(buttons, &QDialogButtonBox::accepted, this, &SelectionDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SelectionDialog::reject);
    connect(condition_, &ConditionEdit::textChanged, this, &SelectionDialog::conditionChanged);
    pause_.setSingleShot(true);
    pause_.setInterval(250);
    connect(&pause_, &QTimer::timeout, this, &SelectionDialog::startCounting);
    connect(&idle_, &QTimer::timeout, this, &SelectionDialog::countSome);

    auto* layout = new QGridLayout(this);
    layout->addWidget(prompt, 0, 0, 1, 2);
    layout->addWidget(condition_, 1, 0, 1, 2);
    layout->addWidget(outcome_, 2, 0, 1, 2);
    layout->addWidget(pane, 3, 0, 1, 2);
    layout->addWidget(buttons, 4, 0, 1, 2);
    layout->setRowStretch(3, 1);
    resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 30);

    condition_->setPlainText(QString::fromStdString(data_.condition()));
    condition_->moveCursor(QTextCursor::End);
    condition_->setFocus();
    startCounting();
}

SelectionDialog::~SelectionDialog() = default;

void SelectionDialog::conditionChanged() {
    condition_->clearMark();
    pass_.reset();
    failed_ = false;
    applyWhenCounted_ = false;
    pause_.start();
}

void SelectionDialog::startCounting() {
    pause_.stop();
    pass_.reset();
    failed_ = false;
    const std::string text = condition_->expression();
    if (isBlank(text)) {
        showCount();
        return;
    }
    try {
        pass_ = std::make_unique<SelectionPass>(data_.dataSet(), text);
        idle_.start(0);
        countSome(); // few cases are counted at once
    } catch (const ExpressionError& error) {
        condition_->mark(error.position());
        showError(shown(error.what()));
    } catch (const std::exception& error) {
        showError(shown(error.what()));
    }
}

void SelectionDialog::countSome() {
    constexpr qint64 milliseconds = 15;
    QElapsedTimer clock;
    clock.start();
    try {
        if (pass_ && !pass_->atEnd()) {
            while (pass_->advance(piece) && clock.elapsed() < milliseconds) {}
            showCount();
        }
    } catch (const std::exception& error) {
        pass_.reset();
        showError(shown(error.what()));
    }
    const bool counting = pass_ && !pass_->atEnd();
    if (!counting) idle_.stop();
    if (!counting && pass_ && applyWhenCounted_) accept();
}

void SelectionDialog::showCount() {
    showAsError(*outcome_, false);
    const int all = data_.dataSet().caseCount();
    if (!pass_) {
        outcome_->setText(tr("All %1 take part.").arg(casesText(all)));
        return;
    }
    if (!pass_->atEnd()) {
        const auto percent = pass_->casesDone() * 100 / static_cast<std::size_t>(all);
        outcome_->setText(tr("Counting... %1 %").arg(percent));
        return;
    }
    const CaseSelection& found = pass_->selection();
    QString text = tr("%1 of %2 selected.").arg(countText(found.selectedCount), casesText(all));
    if (found.missingCount > 0)
        text += tr(" %1 left out because a value of the condition is missing.")
                    .arg(casesText(found.missingCount));
    outcome_->setText(text);
    showAsError(*outcome_, found.selectedCount == 0);
}

void SelectionDialog::showError(const QString& text) {
    failed_ = true;
    applyWhenCounted_ = false;
    outcome_->setText(text);
    showAsError(*outcome_, true);
}

void SelectionDialog::accept() {
    if (isBlank(condition_->expression())) {
        data_.select("");
        QDialog::accept();
        return;
    }
    if (!pass_ && !failed_) startCounting();
    if (failed_) {
        condition_->goToMark();
        condition_->setFocus();
        return;
    }
    if (!pass_) return;
    if (!pass_->atEnd()) {
        applyWhenCounted_ = true;
        return;
    }
    data_.select(std::string(condition_->expression()), pass_->take());
    QDialog::accept();
}

} // namespace korvana::desktop
