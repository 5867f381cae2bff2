#include "apps/desktop/data/SelectionDialog.h"

#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/ExpressionPieces.h"
#include "apps/desktop/data/GridText.h"
#include "apps/desktop/data/VariableChooser.h"
#include "host/data/NumberText.h"

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QListWidget>
#include <QPushButton>
#include <exception>

namespace korvana::desktop {
namespace {

constexpr std::size_t piece = 2'000; // cases between two looks at the clock
constexpr int codesLimit = 200;

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

} // namespace

SelectionDialog::SelectionDialog(ActiveData& active, QWidget* parent)
    : QDialog(parent), data_(active), condition_(new ConditionEdit(this)),
      variables_(new VariableChooser(active.dataSet(), false, this)), codes_(new QListWidget(this)),
      outcome_(new QLabel(this)) {
    setWindowTitle(tr("Select Cases"));
    auto* prompt = new QLabel(tr("&Cases take part that satisfy this condition (empty: all cases)"), this);
    prompt->setBuddy(condition_);
    prompt->setWordWrap(true);
    condition_->setAccessibleName(tr("Condition"));
    condition_->setPlaceholderText(tr("for example: age >= 60 and not missing(stage)"));
    auto* variablesLabel = new QLabel(tr("&Variables"), this);
    variablesLabel->setBuddy(variables_);
    auto* codesLabel = new QLabel(tr("Va&lues of the variable"), this);
    codesLabel->setBuddy(codes_);
    codes_->setAccessibleName(tr("Values of the variable"));
    codes_->setUniformItemSizes(true);
    codes_->setTextElideMode(Qt::ElideRight);
    codes_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // so that a long label ends in an ellipsis
    codes_->installEventFilter(this);
    auto* hint =
        new QLabel(tr("Double-click or Enter inserts. Signs: = <> < <= > >= + - * / ^ and or not ( ); "
                      "texts in quotation marks; dates as 1995-01-15; missing(variable)."),
                   this);
    hint->setWordWrap(true);
    outcome_->setWordWrap(true);
    outcome_->setTextFormat(Qt::PlainText);
    outcome_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    outcome_->setMinimumHeight(fontMetrics().lineSpacing() * 3);

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
    connect(variables_, &VariableChooser::currentChanged, this, &SelectionDialog::showCodes);
    connect(variables_, &VariableChooser::chosen, this, &SelectionDialog::insertVariable);
    connect(codes_, &QListWidget::itemDoubleClicked, this, &SelectionDialog::insertCode);
    connect(condition_, &ConditionEdit::textChanged, this, &SelectionDialog::conditionChanged);
    pause_.setSingleShot(true);
    pause_.setInterval(250);
    connect(&pause_, &QTimer::timeout, this, &SelectionDialog::startCounting);
    connect(&idle_, &QTimer::timeout, this, &SelectionDialog::countSome);

    auto* layout = new QGridLayout(this);
    layout->addWidget(prompt, 0, 0, 1, 2);
    layout->addWidget(condition_, 1, 0, 1, 2);
    layout->addWidget(outcome_, 2, 0, 1, 2);
    layout->addWidget(variablesLabel, 3, 0);
    layout->addWidget(codesLabel, 3, 1);
    layout->addWidget(variables_, 4, 0);
    layout->addWidget(codes_, 4, 1);
    layout->addWidget(hint, 5, 0, 1, 2);
    layout->addWidget(buttons, 6, 0, 1, 2);
    layout->setRowStretch(4, 1);
    layout->setColumnStretch(0, 3);
    layout->setColumnStretch(1, 2);
    resize(fontMetrics().averageCharWidth() * 84, fontMetrics().height() * 30);

    condition_->setPlainText(QString::fromStdString(data_.condition()));
    condition_->moveCursor(QTextCursor::End);
    variables_->setCurrent(0);
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
    while (describer_ && clock.elapsed() < milliseconds)
        if (!describer_->advance(piece)) showCounted();
    const bool counting = pass_ && !pass_->atEnd();
    if (!counting && !describer_) idle_.stop();
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

void SelectionDialog::showCodes() {
    codes_->clear();
    describer_.reset();
    described_ = variables_->current();
    if (described_ < 0) return;
    describer_.emplace(data_.dataSet(), described_, std::span<const std::uint8_t>{}, codesLimit);
    idle_.start(0);
}

void SelectionDialog::showCounted() {
    const VariableSummary summary = describer_->take();
    describer_.reset();
    const Variable& variable = data_.dataSet().variable(described_);
    for (const DistinctValue& each : summary.distinct.values) {
        const QString code = valueText(variable, each.value, false);
        const QString label = shown(each.label);
        QString text = variable.kind == VariableKind::Text ? label : code;
        if (variable.kind != VariableKind::Text && !label.isEmpty() && label != code)
            text += QStringLiteral(" = ") + label;
        auto* item =
            new QListWidgetItem(text + QStringLiteral("   (") + countText(each.count) + QLatin1Char(')'));
        item->setData(Qt::UserRole, each.value);
        item->setToolTip(item->text());
        codes_->addItem(item);
    }
    QString note;
    if (summary.distinct.moreThanLimit) note = tr("more than %1 values").arg(codesLimit);
    if (summary.distinct.moreThanLimit && variable.kind != VariableKind::Text)
        note += tr(", %1 to %2")
                    .arg(valueText(variable, summary.min, false), valueText(variable, summary.max, false));
    if (summary.validCount == 0) note = tr("no values");
    if (!note.isEmpty()) (new QListWidgetItem(note, codes_))->setFlags(Qt::NoItemFlags);
    if (summary.missingCount > 0)
        (new QListWidgetItem(tr("%1 missing").arg(casesText(summary.missingCount)), codes_))
            ->setFlags(Qt::NoItemFlags);
    if (!summary.distinct.values.empty()) codes_->setCurrentRow(0);
}

void SelectionDialog::insertVariable(int variable0) {
    condition_->insertPiece(expressionName(data_.dataSet().variable(variable0).name));
    condition_->setFocus();
}

void SelectionDialog::insertCode() {
    const QListWidgetItem* const item = codes_->currentItem();
    if (item == nullptr || !(item->flags() & Qt::ItemIsSelectable) || described_ < 0) return;
    const Variable& variable = data_.dataSet().variable(described_);
    condition_->insertPiece(
        comparisonPiece(variable, item->data(Qt::UserRole).toDouble(), condition_->before()));
    condition_->setFocus();
}

bool SelectionDialog::eventFilter(QObject* object, QEvent* event) {
    if (object == codes_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            insertCode();
            return true;
        }
    }
    return QDialog::eventFilter(object, event);
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
