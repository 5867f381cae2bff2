#include "apps/desktop/results/Workbook.h"

#include <QAction>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QSplitter>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "apps/desktop/results/ChartView.h"
#include "apps/desktop/results/OutputIcons.h"
#include "apps/desktop/results/OutputText.h"
#include "apps/desktop/results/ReportView.h"
#include "apps/desktop/results/SheetView.h"

namespace korvana::desktop {
namespace {

enum Role : int { RunRole = Qt::UserRole, PlaceRole };

constexpr int kNoPlace = -1; // the run itself

OutputIcon iconOf(const ResultsBook::Output& output) {
    if (std::holds_alternative<Spreadsheet>(output)) return OutputIcon::Table;
    if (std::holds_alternative<Chart>(output)) return OutputIcon::Chart;
    return OutputIcon::Report;
}

} // namespace

Workbook::Workbook(QWidget* parent)
    : QWidget(parent), splitter_(new QSplitter), tree_(new QTreeWidget), origin_(new QLabel),
      pages_(new QStackedWidget), nothing_(new QWidget) {
    tree_->setHeaderHidden(true);
    tree_->setFrameShape(QFrame::NoFrame);
    tree_->setUniformRowHeights(true);
    tree_->setTextElideMode(Qt::ElideMiddle); // outputs of one kind differ in their last word
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
    origin_->setTextFormat(Qt::PlainText); // a condition has < and >
    origin_->setWordWrap(true);
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
    showCurrent();
}

Workbook::~Workbook() {
    tree_->disconnect(this); // items that go one by one must not be shown any more
}

void Workbook::makeActions() {
    const auto make = [this](const QString& text, const QKeySequence& keys, Qt::ShortcutContext context,
                             auto slot) {
        auto* action = new QAction(text, this);
        action->setShortcut(keys);
        action->setShortcutContext(context);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
        return action;
    };
    copy_ = make(tr("&Copy"), QKeySequence::Copy, Qt::WidgetWithChildrenShortcut, [this] {
        if (OutputView* shown = currentView()) shown->copy();
    });
    exportOutput_ = make(tr("&Export This Output..."), Qt::CTRL | Qt::Key_E, Qt::WindowShortcut,
                         [this] { exportOutput(); });
    exportRun_ = make(tr("Export &Workbook..."), Qt::CTRL | Qt::SHIFT | Qt::Key_E, Qt::WindowShortcut,
                      [this] { exportRuns(); });
    print_ = make(tr("&Print..."), QKeySequence::Print, Qt::WindowShortcut, [this] { printOutput(); });
    preview_ = make(tr("Print Pre&view..."), {}, Qt::WindowShortcut, [this] { previewOutput(); });
    for (QAction*& separator : separators_) {
        separator = new QAction(this);
        separator->setSeparator(true);
    }
    remove_ = make(tr("&Remove This Run"), {}, Qt::WindowShortcut, [this] { removeRun(currentRun()); });
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
    run.item->setData(0, PlaceRole, kNoPlace);
    run.item->setIcon(0, outputIcon(OutputIcon::Run, *tree_));
    run.item->setToolTip(0, title);
    listOutputs(run);
    run.item->setExpanded(true);
    tree_->show();
    showRun(number);
    return number;
}

void Workbook::listOutputs(Run& run) {
    const auto count = static_cast<int>(run.book->outputs.size());
    for (int place = run.item->childCount(); place < count; ++place) {
        const auto at = static_cast<std::size_t>(place);
        auto* item = new QTreeWidgetItem(run.item);
        item->setData(0, RunRole, run.item->data(0, RunRole));
        item->setData(0, PlaceRole, place);
        item->setIcon(0, outputIcon(iconOf(run.book->outputs[at]), *tree_));
    }
    for (int place = 0; place < run.item->childCount(); ++place) {
        const QString name = outputName(*run.book, static_cast<std::size_t>(place));
        const QString details = originDetails(run.book->outputs[static_cast<std::size_t>(place)]);
        run.item->child(place)->setText(0, name);
        run.item->child(place)->setToolTip(0, details.isEmpty() ? name : name + QLatin1Char('\n') + details);
    }
    run.views.resize(run.book->outputs.size());
}

void Workbook::outputAdded(int number) {
    Run* run = runOf(number);
    if (run == nullptr) return;
    const int before = run->item->childCount();
    listOutputs(*run);
    if (run->overview != nullptr) run->overview->refresh();
    for (int place = run->item->childCount() - 1; place >= before; --place) {
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
    for (OutputView* one : run->views)
        if (one != nullptr) one->refresh();
}

void Workbook::showRun(int number) {
    const Run* run = runOf(number);
    if (run == nullptr) return;
    tree_->setCurrentItem(run->item->childCount() > 0 ? run->item->child(0) : run->item);
}

bool Workbook::showOutput(int number, int place) {
    const Run* run = runOf(number);
    if (run == nullptr || place < 0 || place >= run->item->childCount()) return false;
    tree_->setCurrentItem(run->item->child(place));
    return true;
}

void Workbook::removeRun(int number) {
    const auto found = runs_.find(number);
    if (found == runs_.end()) return;
    Run run = std::move(found->second);
    runs_.erase(found);
    delete run.item;
    delete run.overview;
    for (OutputView* one : run.views)
        delete one;
    tree_->setVisible(!isEmpty());
    if (currentRun() < 0 && !isEmpty()) showRun(runs_.rbegin()->first);
    showCurrent();
}

void Workbook::clear() {
    while (!runs_.empty())
        removeRun(runs_.begin()->first);
}

bool Workbook::isEmpty() const {
    return runs_.empty();
}

int Workbook::runCount() const {
    return static_cast<int>(runs_.size());
}

int Workbook::currentRun() const {
    const QTreeWidgetItem* item = tree_->currentItem();
    return item == nullptr ? -1 : item->data(0, RunRole).toInt();
}

int Workbook::currentOutput() const {
    const QTreeWidgetItem* item = tree_->currentItem();
    return item == nullptr ? kNoPlace : item->data(0, PlaceRole).toInt();
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
    if (place == kNoPlace) {
        if (run.overview == nullptr) {
            run.overview = new ReportView([book = run.book] { return runLines(*book); }, run.title);
            adopt(run.overview);
        }
        return run.overview;
    }
    OutputView*& one = run.views.at(static_cast<std::size_t>(place));
    if (one != nullptr) return one;
    const ResultsBook::Output& output = run.book->outputs.at(static_cast<std::size_t>(place));
    if (const auto* sheet = std::get_if<Spreadsheet>(&output)) {
        one = new SheetView(*sheet);
    } else if (const auto* chart = std::get_if<Chart>(&output)) {
        auto* drawn = new ChartView(chart->info);
        if (chart->numbersAtRisk) {
            ChartEdits edits;
            edits.numbersAtRisk = true;
            drawn->setEdits(edits);
        }
        one = drawn;
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
    const bool output = run != nullptr && currentOutput() != kNoPlace;
    const auto place = static_cast<std::size_t>(output ? currentOutput() : 0);
    origin_->setText(output ? originText(run->book->outputs.at(place)) : QString{});
    origin_->setToolTip(output ? originDetails(run->book->outputs.at(place)) : QString{});
    origin_->setVisible(!origin_->text().isEmpty());
    for (QAction* action : {copy_, exportRun_, print_, preview_, remove_})
        action->setEnabled(run != nullptr);
    exportOutput_->setEnabled(run != nullptr && currentOutput() != kNoPlace);
}

void Workbook::showMenu(const QPoint& place) {
    const OutputView* shown = currentView();
    if (shown == nullptr) return;
    QMenu menu(this);
    menu.addActions(menuActions());
    menu.exec(place);
}

QList<QAction*> Workbook::menuActions() const {
    QList<QAction*> actions{copy_};
    if (OutputView* shown = currentView()) actions += shown->viewActions();
    actions += {separators_[0], exportOutput_, exportRun_, print_, preview_, separators_[1], remove_};
    return actions;
}

QAction* Workbook::copyAction() const {
    return copy_;
}
QAction* Workbook::exportOutputAction() const {
    return exportOutput_;
}
QAction* Workbook::exportRunAction() const {
    return exportRun_;
}
QAction* Workbook::printAction() const {
    return print_;
}
QAction* Workbook::printPreviewAction() const {
    return preview_;
}

void Workbook::setIcons() {
    for (const auto& [number, run] : runs_) {
        run.item->setIcon(0, outputIcon(OutputIcon::Run, *tree_));
        for (int place = 0; place < run.item->childCount(); ++place)
            run.item->child(place)->setIcon(
                0, outputIcon(iconOf(run.book->outputs[static_cast<std::size_t>(place)]), *tree_));
    }
}

void Workbook::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) setIcons();
}

} // namespace korvana::desktop
