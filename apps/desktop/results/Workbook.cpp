#include "apps/desktop/results/Workbook.h"

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QSplitter>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "apps/desktop/results/ChartView.h"
#include "apps/desktop/results/FileWriting.h"
#include "apps/desktop/results/OutputIcons.h"
#include "apps/desktop/results/OutputText.h"
#include "apps/desktop/results/ReportView.h"
#include "apps/desktop/results/SheetView.h"
#include "apps/desktop/text/WrappedLabel.h"

namespace korvana::desktop {
namespace {

enum Role : int { RunRole = Qt::UserRole, PlaceRole };

constexpr int noPlace = -1; // the run itself

OutputIcon iconOf(const ResultsBook::Output& output) {
    if (std::holds_alternative<Spreadsheet>(output)) return OutputIcon::Table;
    if (std::holds_alternative<Chart>(output)) return OutputIcon::Chart;
    return OutputIcon::Report;
}

} // namespace

Workbook::Workbook(QWidget* parent)
    : QWidget(parent), splitter_(new QSplitter), tree_(new QTreeWidget), origin_(new WrappedLabel),
      pages_(new QStackedWidget), nothing_(new QWidget) {
    useChartDrawer(drawInWindowThread);
    tree_->setHeaderHidden(true);
    tree_->setFrameShape(QFrame::NoFrame);
    tree_->setUniformRowHeights(true);
    tree_->setTextElideMode(Qt::ElideMiddle); // similar outputs differ in their last word
    tree_->setAccessibleName(tr("Runs and their outputs"));
    tree_->setContextMenuPolicy(Qt::CustomContextMenu);
    tree_->setMinimumWidth(fontMetrics().averageCharWidth() * 12);
    connect(tree_, &QTreeWidget::currentItemChanged, this, &Workbook::showCurrent);
    connect(tree_, &QTreeWidget::itemActivated, this, [this] {
        if (OutputView* shown = currentView()) shown->content()->setFocus();
    });
    connect(tree_, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { showMenu(tree_->viewport()->mapToGlobal(place)); });

    auto* hint = new QLabel(tr("No results yet.\nAn analysis from the Statistics menu puts them here."));
    hint->setAlignment(Qt::AlignCenter);
    hint->setWordWrap(true);
    auto* hintRow = new QHBoxLayout(nothing_);
    hintRow->addWidget(hint);
    nothing_->setAutoFillBackground(true);
    nothing_->setBackgroundRole(QPalette::Base);
    pages_->addWidget(nothing_);

    origin_->setObjectName(QStringLiteral("origin"));
    origin_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    origin_->setContentsMargins(8, 4, 8, 0);
    QFont small = origin_->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    origin_->setFont(small);
    auto* shown = new QWidget;
    auto* column = new QVBoxLayout(shown);
    column->setContentsMargins({});
    column->addWidget(origin_);
    column->addWidget(pages_, 1);
    splitter_->addWidget(tree_);
    splitter_->addWidget(shown);
    splitter_->setChildrenCollapsible(false);
    splitter_->setStretchFactor(1, 1);
    const int letter = fontMetrics().averageCharWidth();
    splitter_->setSizes({46 * letter, 104 * letter});
    tree_->hide();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(splitter_);
    makeActions();
    qApp->installEventFilter(this);
    showCurrent();
}

Workbook::~Workbook() {
    tree_->disconnect(this); // items must not be shown while they are destroyed one by one
}

Workbook::Run* Workbook::runOf(int run) {
    const auto found = runs_.find(run);
    return found == runs_.end() ? nullptr : &found->second;
}

const Workbook::Run* Workbook::runOf(int run) const {
    const auto found = runs_.find(run);
    return found == runs_.end() ? nullptr : &found->second;
}

int Workbook::addRun(std::shared_ptr<const ResultsBook> book, const QString& title) {
    const int number = next_++;
    Run& run = runs_[number];
    run.book = book ? std::move(book) : std::make_shared<const ResultsBook>();
    run.title = title;
    run.item = new QTreeWidgetItem(tree_, {title});
    run.item->setData(0, RunRole, number);
    run.item->setData(0, PlaceRole, noPlace);
    run.item->setIcon(0, outputIcon(OutputIcon::Run, *tree_));
    run.item->setToolTip(0, title);
    listOutputs(run);
    run.item->setExpanded(true);
    tree_->show();
    showRun(number);
    return number;
}

void Workbook::listOutputs(Run& run) {
    run.outputs.resize(run.book->outputs.size());
    int row = 0;
    for (std::size_t at = 0; at < run.outputs.size(); ++at) {
        if (run.outputs[at].removed) continue;
        const auto place = static_cast<int>(at);
        QTreeWidgetItem* item = run.item->child(row);
        if (item == nullptr || item->data(0, PlaceRole).toInt() != place) {
            item = new QTreeWidgetItem;
            item->setData(0, RunRole, run.item->data(0, RunRole));
            item->setData(0, PlaceRole, place);
            item->setIcon(0, outputIcon(iconOf(run.book->outputs[at]), *tree_));
            run.item->insertChild(row, item);
        }
        ++row;
        const QString name = outputName(*run.book, at);
        const QString details = originDetails(run.book->outputs[at]);
        item->setText(0, tellingName(*run.book, at));
        item->setToolTip(0, details.isEmpty() ? name : name + QLatin1Char('\n') + details);
    }
    if (row > 0) run.removed = false; // it continues
    run.item->setHidden(run.removed);
    tree_->setVisible(!isEmpty());
}

QTreeWidgetItem* Workbook::itemOf(const Run& run, int place) {
    for (int row = 0; row < run.item->childCount(); ++row)
        if (run.item->child(row)->data(0, PlaceRole).toInt() == place) return run.item->child(row);
    return nullptr;
}

void Workbook::outputAdded(int number) {
    Run* run = runOf(number);
    if (run == nullptr) return;
    const auto before = static_cast<int>(run->outputs.size());
    listOutputs(*run);
    if (run->overview != nullptr) run->overview->refresh();
    for (int place = static_cast<int>(run->outputs.size()) - 1; place >= before; --place) {
        if (ResultsBook::repeatsReport(run->book->outputs[static_cast<std::size_t>(place)])) continue;
        showOutput(number, place);
        return;
    }
}

void Workbook::outputChanged(int number) {
    Run* run = runOf(number);
    if (run == nullptr) return;
    listOutputs(*run);
    if (run->overview != nullptr) run->overview->refresh();
    for (const Shown& one : run->outputs)
        if (one.view != nullptr) one.view->refresh();
}

void Workbook::showRun(int number) {
    const Run* run = runOf(number);
    if (run == nullptr || run->removed) return;
    tree_->setCurrentItem(run->item->childCount() > 0 ? run->item->child(0) : run->item);
}

bool Workbook::showOutput(int number, int place) {
    const Run* run = runOf(number);
    QTreeWidgetItem* item = run == nullptr || place < 0 ? nullptr : itemOf(*run, place);
    if (item == nullptr) return false;
    tree_->setCurrentItem(item);
    return true;
}

bool Workbook::isEmpty() const {
    return runCount() == 0;
}

int Workbook::runCount() const {
    return static_cast<int>(
        std::count_if(runs_.begin(), runs_.end(), [](const auto& run) { return !run.second.removed; }));
}

int Workbook::currentRun() const {
    const QTreeWidgetItem* item = tree_->currentItem();
    return item == nullptr ? -1 : item->data(0, RunRole).toInt();
}

int Workbook::currentOutput() const {
    const QTreeWidgetItem* item = tree_->currentItem();
    return item == nullptr ? noPlace : item->data(0, PlaceRole).toInt();
}

std::shared_ptr<const ResultsBook> Workbook::book(int number) const {
    const Run* run = runOf(number);
    return run == nullptr ? nullptr : run->book;
}

OutputView* Workbook::currentView() const {
    return qobject_cast<OutputView*>(pages_->currentWidget());
}

void Workbook::adopt(OutputView* one) {
    pages_->addWidget(one);
    connect(one, &OutputView::statusText, this, &Workbook::statusText);
    connect(one, &OutputView::menuWanted, this, &Workbook::showMenu);
}

OutputView* Workbook::view(Run& run, int place) {
    if (place == noPlace) {
        if (run.overview == nullptr) {
            run.overview = new ReportView([&run] { return runLines(*run.book, removedOf(run)); }, run.title);
            adopt(run.overview);
        }
        return run.overview;
    }
    OutputView*& one = run.outputs.at(static_cast<std::size_t>(place)).view;
    if (one != nullptr) return one;
    const ResultsBook::Output& output = run.book->outputs.at(static_cast<std::size_t>(place));
    if (const auto* sheet = std::get_if<Spreadsheet>(&output)) {
        one = new SheetView(*sheet);
    } else if (const auto* chart = std::get_if<Chart>(&output)) {
        one = new ChartView(chart->info);
    } else {
        const auto* report = &std::get<Report>(output);
        one = new ReportView([report]() -> const std::vector<std::string>& { return report->lines; },
                             outputName(*run.book, static_cast<std::size_t>(place)));
    }
    adopt(one);
    return one;
}

void Workbook::showCurrent() {
    Run* run = runOf(currentRun());
    pages_->setCurrentWidget(run == nullptr ? nothing_ : view(*run, currentOutput()));
    offerKeysOf(currentView());
    const bool output = run != nullptr && currentOutput() != noPlace;
    const auto place = static_cast<std::size_t>(output ? currentOutput() : 0);
    origin_->setText(output ? withShortWords(originText(*run->book, place)) : QString{});
    origin_->setToolTip(output ? originDetails(run->book->outputs.at(place)) : QString{});
    origin_->setVisible(!origin_->text().isEmpty());
    for (QAction* action : {copy_, exportRun_, print_, preview_, removeRun_})
        action->setEnabled(run != nullptr);
    for (QAction* action : {exportOutput_, removeOutput_})
        action->setEnabled(output);
    saveScript_->setEnabled(run != nullptr && !run->book->outputs.empty());
    removeOutput_->setShortcut(output ? QKeySequence(QKeySequence::Delete) : QKeySequence());
    removeRun_->setShortcut(output ? QKeySequence() : QKeySequence(QKeySequence::Delete));
    undo_->setEnabled(!removals_.empty());
}

void Workbook::setIcons() {
    for (const auto& [number, run] : runs_) {
        run.item->setIcon(0, outputIcon(OutputIcon::Run, *tree_));
        for (int row = 0; row < run.item->childCount(); ++row) {
            QTreeWidgetItem* item = run.item->child(row);
            const auto place = static_cast<std::size_t>(item->data(0, PlaceRole).toInt());
            item->setIcon(0, outputIcon(iconOf(run.book->outputs[place]), *tree_));
        }
    }
}

void Workbook::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) setIcons();
}

} // namespace korvana::desktop
