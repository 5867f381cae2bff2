#include "apps/desktop/data/SelectionDialog.h"

#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/GridText.h"

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <exception>

namespace korvana::desktop {
namespace {

constexpr std::size_t piece = 2'000; // cases between checks of the clock

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

SelectionDialog::SelectionDialog(ActiveData& active, QWidget* parent)
    : ExpressionDialog(active, tr("Select Cases"), parent) {
    auto* prompt = new QLabel(tr("Select &cases that satisfy this condition (empty: all cases)"), this);
    prompt->setBuddy(expression_);
    prompt->setWordWrap(true);
    expression_->setAccessibleName(tr("Condition"));
    expression_->setPlaceholderText(tr("for example: age >= 60 and not missing(stage)"));
    QPushButton* all = buttons_->addButton(tr("&All Cases"), QDialogButtonBox::ResetRole);
    all->setAutoDefault(false);
    connect(all, &QPushButton::clicked, this, [this] {
        expression_->setPlainText({});
        expression_->setFocus();
    });
    connect(expression_, &ConditionEdit::textChanged, this, &SelectionDialog::forgetCount);
    connect(&idle_, &QTimer::timeout, this, &SelectionDialog::countSome);
    auto* fields = new QVBoxLayout;
    fields->addWidget(prompt);
    fields->addWidget(expression_);
    layOut(fields);

    expression_->setPlainText(QString::fromStdString(data_.condition()));
    expression_->moveCursor(QTextCursor::End);
    expression_->setFocus();
    look();
}

SelectionDialog::~SelectionDialog() = default;

void SelectionDialog::forgetCount() {
    pass_.reset();
    failed_ = false;
    applyWhenCounted_ = false;
}

void SelectionDialog::look() {
    lookedAt();
    pass_.reset();
    failed_ = false;
    const std::string text = expression_->expression();
    if (isBlank(text)) {
        showCount();
        return;
    }
    try {
        pass_ = std::make_unique<SelectionPass>(data_.dataSet(), text);
        idle_.start(0);
        countSome(); // few cases are counted at once
    } catch (const std::exception& error) {
        fail(error);
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
        fail(error);
    }
    const bool counting = pass_ && !pass_->atEnd();
    if (!counting) idle_.stop();
    if (!counting && pass_ && applyWhenCounted_) accept();
}

void SelectionDialog::showCount() {
    const int all = data_.dataSet().caseCount();
    if (!pass_) {
        say(tr("All %1 selected.").arg(casesText(all)));
        return;
    }
    if (!pass_->atEnd()) {
        const auto percent = pass_->casesDone() * 100 / static_cast<std::size_t>(all);
        say(tr("Counting... %1 %").arg(percent));
        return;
    }
    const CaseSelection& found = pass_->selection();
    QString text = tr("%1 of %2 selected.").arg(countText(found.selectedCount), casesText(all));
    if (found.missingCount > 0)
        text += tr(" %1 left out because a value of the condition is missing.")
                    .arg(casesText(found.missingCount));
    say(text, found.selectedCount == 0);
}

void SelectionDialog::fail(const std::exception& error) {
    failed_ = true;
    applyWhenCounted_ = false;
    sayFault(error);
}

void SelectionDialog::accept() {
    if (isBlank(expression_->expression())) {
        data_.select("");
        QDialog::accept();
        return;
    }
    if (!pass_ && !failed_) look();
    if (failed_) {
        goToFault();
        return;
    }
    if (!pass_) return;
    if (!pass_->atEnd()) {
        applyWhenCounted_ = true;
        return;
    }
    data_.select(std::string(expression_->expression()), pass_->take());
    QDialog::accept();
}

} // namespace korvana::desktop
