#include "apps/desktop/data/ExpressionPane.h"

#include "apps/desktop/data/ConditionEdit.h"
#include "apps/desktop/data/ExpressionPieces.h"
#include "apps/desktop/data/GridText.h"
#include "apps/desktop/data/VariableChooser.h"

#include <QElapsedTimer>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QListView>
#include <QListWidget>

namespace korvana::desktop {
namespace {

constexpr int codesLimit = 200;

} // namespace

ExpressionPane::ExpressionPane(const DataSet& dataSet, ConditionEdit& field, QWidget* parent)
    : QWidget(parent), data_(dataSet), field_(field), variables_(new VariableChooser(dataSet, false, this)),
      codes_(new QListWidget(this)) {
    auto* variablesLabel = new QLabel(tr("&Variables"), this);
    variablesLabel->setBuddy(variables_);
    auto* codesLabel = new QLabel(tr("Va&lues of the variable"), this);
    codesLabel->setBuddy(codes_);
    codes_->setAccessibleName(tr("Values of the variable"));
    codes_->setUniformItemSizes(true);
    codes_->setTextElideMode(Qt::ElideRight);
    codes_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff); // so that a long label ends in an ellipsis
    codes_->installEventFilter(this);
    variables_->list()->installEventFilter(this);
    auto* hint = new QLabel(
        tr("Double-click or the space bar inserts. Operators: = <> < <= > >= + - * / ^ and or not ( ); "
           "texts in quotation marks; dates as 1995-01-15; missing(variable)."),
        this);
    hint->setWordWrap(true);
    connect(variables_, &VariableChooser::currentChanged, this, &ExpressionPane::showCodes);
    connect(variables_, &VariableChooser::chosen, this, &ExpressionPane::insertVariable);
    connect(codes_, &QListWidget::itemDoubleClicked, this, &ExpressionPane::insertCode);
    connect(&idle_, &QTimer::timeout, this, &ExpressionPane::countSome);

    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(variablesLabel, 0, 0);
    layout->addWidget(codesLabel, 0, 1);
    layout->addWidget(variables_, 1, 0);
    layout->addWidget(codes_, 1, 1);
    layout->addWidget(hint, 2, 0, 1, 2);
    layout->setRowStretch(1, 1);
    layout->setColumnStretch(0, 3);
    layout->setColumnStretch(1, 2);
    variables_->setCurrent(0);
}

void ExpressionPane::showCodes() {
    codes_->clear();
    describer_.reset();
    described_ = variables_->current();
    if (described_ < 0) return;
    describer_.emplace(data_, described_, std::span<const std::uint8_t>{}, codesLimit);
    idle_.start(0);
}

void ExpressionPane::countSome() {
    constexpr std::size_t piece = 2'000; // cases between checks of the clock
    constexpr qint64 milliseconds = 15;
    QElapsedTimer clock;
    clock.start();
    while (describer_ && clock.elapsed() < milliseconds)
        if (!describer_->advance(piece)) showCounted();
    if (!describer_) idle_.stop();
}

void ExpressionPane::showCounted() {
    const VariableSummary summary = describer_->take();
    describer_.reset();
    const Variable& variable = data_.variable(described_);
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

void ExpressionPane::insertVariable(int variable0) {
    field_.insertPiece(expressionName(data_.variable(variable0).name));
    field_.setFocus();
}

void ExpressionPane::insertCode() {
    const QListWidgetItem* const item = codes_->currentItem();
    if (item == nullptr || !(item->flags() & Qt::ItemIsSelectable) || described_ < 0) return;
    const Variable& variable = data_.variable(described_);
    field_.insertPiece(comparisonPiece(variable, item->data(Qt::UserRole).toDouble(), field_.before()));
    field_.setFocus();
}

bool ExpressionPane::eventFilter(QObject* object, QEvent* event) {
    const bool inserts =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space;
    if (!inserts) return QWidget::eventFilter(object, event);
    if (object == codes_)
        insertCode();
    else if (variables_->current() >= 0)
        insertVariable(variables_->current());
    return true;
}

} // namespace korvana::desktop
