// Removing from the workbook, undoing that, and counting what was not exported yet.
#include <QAction>
#include <QTreeWidget>
#include <algorithm>
#include <utility>

#include "apps/desktop/results/ChartView.h"
#include "apps/desktop/results/OutputExport.h"
#include "apps/desktop/results/ReportView.h"
#include "apps/desktop/results/Workbook.h"

namespace korvana::desktop {

void Workbook::removeOutput(int number, int place) {
    Run* run = runOf(number);
    QTreeWidgetItem* item = run == nullptr || place < 0 ? nullptr : itemOf(*run, place);
    if (item == nullptr) return;
    const QString name = item->text(0);
    run->outputs[static_cast<std::size_t>(place)].removed = true;
    removals_.push_back({number, {static_cast<std::size_t>(place)}, false});
    // The next one is selected, so that Delete continues from there.
    const int row = run->item->indexOfChild(item);
    if (tree_->currentItem() == item) {
        QTreeWidgetItem* next = run->item->child(row + 1);
        if (next == nullptr) next = row > 0 ? run->item->child(row - 1) : run->item;
        tree_->setCurrentItem(next);
    }
    delete item;
    if (run->overview != nullptr) run->overview->refresh();
    showCurrent();
    emit statusText(tr("'%1' was removed; Ctrl+Z restores it.").arg(name));
}

void Workbook::removeRun(int number) {
    Run* run = runOf(number);
    if (run == nullptr || run->removed) return;
    Removal removal{number, {}, true};
    for (std::size_t place = 0; place < run->outputs.size(); ++place)
        if (!std::exchange(run->outputs[place].removed, true)) removal.places.push_back(place);
    run->removed = true;
    removals_.push_back(std::move(removal));
    tree_->setCurrentItem(nullptr);
    qDeleteAll(run->item->takeChildren());
    delete std::exchange(run->overview, nullptr);
    run->item->setHidden(true);
    tree_->setVisible(!isEmpty());
    forgetRemovedRuns(number);
    const auto last =
        std::find_if(runs_.rbegin(), runs_.rend(), [](const auto& one) { return !one.second.removed; });
    if (last != runs_.rend()) showRun(last->first);
    showCurrent();
    emit statusText(tr("The run was removed; Ctrl+Z restores it."));
}

void Workbook::forgetRemovedRuns(int but) {
    std::vector<int> dead;
    for (const auto& [number, run] : runs_) // a run that is not finished stays removed
        if (run.removed && number != but && run.book.use_count() == 1) dead.push_back(number);
    for (const int number : dead) {
        const Run run = std::move(runs_[number]);
        runs_.erase(number);
        std::erase_if(removals_, [number](const Removal& removal) { return removal.run == number; });
        delete run.item;
        for (const Shown& one : run.outputs)
            delete one.view;
    }
}

void Workbook::undo() {
    if (removals_.empty()) return;
    const Removal removal = std::move(removals_.back());
    removals_.pop_back();
    Run& run = runs_.at(removal.run);
    for (const std::size_t place : removal.places)
        run.outputs[place].removed = false;
    if (removal.whole) run.removed = false;
    listOutputs(run);
    run.item->setExpanded(true);
    if (run.overview != nullptr) run.overview->refresh();
    if (removal.whole)
        showRun(removal.run);
    else
        showOutput(removal.run, static_cast<int>(removal.places.front()));
    showCurrent();
    emit statusText(removal.whole ? tr("The run was restored.") : tr("The output was restored."));
}

void Workbook::clear() {
    std::vector<int> all;
    for (const auto& one : runs_)
        all.push_back(one.first);
    for (const int number : all)
        removeRun(number);
}

ChartEdits Workbook::editsOf(const Run& run, std::size_t place) {
    if (const auto* view = qobject_cast<const ChartView*>(run.outputs[place].view)) return view->edits();
    return {};
}

void Workbook::markExported(Run& run, const FormatSet& formats) {
    for (std::size_t place = 0; place < run.outputs.size(); ++place) {
        const std::vector<OutputFormat> fitting = formatsOf(run.book->outputs[place]);
        if (std::any_of(fitting.begin(), fitting.end(), [&](OutputFormat one) { return formats.has(one); }))
            markExported(run, place);
    }
}

void Workbook::markExported(Run& run, std::size_t place) {
    run.outputs[place].exported = true;
    run.outputs[place].exportedAs = editsOf(run, place);
}

int Workbook::unsaved() const {
    int count = 0;
    for (const auto& [number, run] : runs_) {
        for (std::size_t place = 0; place < run.outputs.size(); ++place) {
            const Shown& one = run.outputs[place];
            if (one.removed) continue;
            if (!one.exported || one.exportedAs != editsOf(run, place)) ++count;
        }
    }
    return count;
}

} // namespace korvana::desktop
