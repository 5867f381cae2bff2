// The workbook's way to files and paper.
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSettings>
#include <QStackedWidget>
#include <exception>
#include <new>
#include <stdexcept>

#include "apps/desktop/WaitCursor.h"
#include "apps/desktop/results/ChartView.h"
#include "apps/desktop/results/ExportDialog.h"
#include "apps/desktop/results/OutputExport.h"
#include "apps/desktop/results/OutputText.h"
#include "apps/desktop/results/Printing.h"
#include "apps/desktop/results/ReportView.h"
#include "apps/desktop/results/Workbook.h"

namespace korvana::desktop {
namespace {

QString filterOf(OutputFormat format) {
    const QString ending = QLatin1String(endingOf(format));
    return QStringLiteral("%1 (*.%2)").arg(ending.toUpper(), ending);
}

std::filesystem::path pathOf(const QString& path) {
    return QDir::toNativeSeparators(path).toStdString();
}

/// Runs `work`; what goes wrong is put into words.
template <class Work>
QString problemOf(Work work) {
    const WaitCursor cursor;
    try {
        work();
        return {};
    } catch (const std::bad_alloc&) {
        return QObject::tr(
            "There is not enough memory to prepare the results. Close other programs, or export "
            "the outputs one by one; tables as CSV need the least.");
    } catch (const std::exception& problem) {
        return QObject::tr("%1.\nChoose another place or name, or make room there, and export again.")
            .arg(QString::fromStdString(problem.what()));
    }
}

} // namespace

void Workbook::showProblem(const QString& text) {
    QMessageBox box(QMessageBox::Warning, tr("Results"), text, QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.exec();
}

std::map<std::size_t, ChartEdits> Workbook::editsOf(const Run& run) const {
    std::map<std::size_t, ChartEdits> edits;
    for (std::size_t place = 0; place < run.views.size(); ++place) {
        const auto* chart = qobject_cast<const ChartView*>(run.views[place]);
        if (chart != nullptr && (chart->edits().changesChart() || chart->edits().numbersAtRisk))
            edits[place] = chart->edits();
    }
    return edits;
}

std::unique_ptr<Chart> Workbook::shownChart() const {
    const auto* chart = qobject_cast<const ChartView*>(pages_->currentWidget());
    if (chart == nullptr) return nullptr;
    return std::make_unique<Chart>(Chart{chart->shownChart(), chart->edits().numbersAtRisk});
}

void Workbook::exportOutput() {
    const Run* run = runOf(currentRun());
    if (run == nullptr || currentOutput() < 0) return;
    const std::shared_ptr<const ResultsBook> book = run->book;
    const auto place = static_cast<std::size_t>(currentOutput());
    const std::vector<OutputFormat> formats = formatsOf(book->outputs.at(place));
    QStringList filters;
    for (const OutputFormat format : formats)
        filters += filterOf(format);
    QSettings settings;
    std::string name = fileNames(*book).at(place);
    if (name.empty()) name = "report";
    const QDir folder(settings.value("export/folder", QDir::homePath()).toString());
    QFileDialog dialog(this, tr("Export This Output"), folder.path());
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(QLatin1String(endingOf(formats.front())));
    dialog.selectFile(QString::fromStdString(name));
    connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
        const qsizetype chosen = filters.indexOf(filter);
        if (chosen >= 0)
            dialog.setDefaultSuffix(QLatin1String(endingOf(formats[static_cast<std::size_t>(chosen)])));
    });
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    const QString target = dialog.selectedFiles().constFirst();
    settings.setValue("export/folder", QFileInfo(target).absolutePath());

    // The ending says the format; where it says nothing, the filter does.
    const qsizetype chosen = std::max<qsizetype>(filters.indexOf(dialog.selectedNameFilter()), 0);
    OutputFormat format = formats[static_cast<std::size_t>(chosen)];
    for (const OutputFormat one : formats)
        if (target.endsWith(QLatin1Char('.') + QLatin1String(endingOf(one)), Qt::CaseInsensitive))
            format = one;
    const QString problem = problemOf(
        [&] { korvana::desktop::exportOutput(*book, place, shownChart().get(), format, pathOf(target)); });
    if (!problem.isEmpty()) {
        showProblem(problem);
        return;
    }
    emit statusText(tr("%1 was written.").arg(QDir::toNativeSeparators(target)));
}

std::size_t Workbook::writeRun(int number, const std::filesystem::path& directory, FormatSet formats,
                               QStringList& problems) const {
    const Run* run = runOf(number);
    if (run == nullptr) return 0;
    std::size_t files = 0;
    const QString problem = problemOf([&] {
        std::vector<std::string> undrawn;
        const auto edits = editsOf(*run);
        // Only what was edited is worth a copy.
        files = edits.empty() ? writeBook(*run->book, directory, formats, &undrawn).size()
                              : writeBook(withEdits(*run->book, edits), directory, formats, &undrawn).size();
        for (const std::string& one : undrawn)
            problems += QString::fromStdString(one);
    });
    if (!problem.isEmpty()) problems += problem;
    return files;
}

void Workbook::exportRuns() {
    const Run* run = runOf(currentRun());
    if (run == nullptr) return;
    ExportDialog dialog(run->title, runCount(), this);
    if (dialog.exec() != QDialog::Accepted) return;
    const std::filesystem::path directory = pathOf(dialog.directory());
    QStringList problems;
    std::size_t files = 0;
    if (dialog.allRuns()) {
        int place = 0;
        for (const auto& one : runs_) {
            const std::string folder = "run-" + std::to_string(++place);
            files += writeRun(one.first, directory / folder, dialog.formats(), problems);
        }
    } else {
        files = writeRun(currentRun(), directory, dialog.formats(), problems);
    }
    emit statusText(tr("%1 files were written to %2.").arg(files).arg(dialog.directory()));
    if (!problems.isEmpty()) showProblem(problems.join(QStringLiteral("\n\n")));
}

void Workbook::printOn(QPrinter& printer) {
    const Run* run = runOf(currentRun());
    if (run == nullptr) return;
    const QString problem = problemOf([&] {
        std::vector<PrintItem> items;
        // What an output came from stands above it, on paper, too.
        const auto addOrigin = [&items](const ResultsBook::Output& output) {
            if (const QString text = originText(output); !text.isEmpty())
                items.emplace_back(std::vector<std::string>{text.toStdString()});
        };
        if (currentOutput() >= 0) addOrigin(run->book->outputs.at(static_cast<std::size_t>(currentOutput())));
        if (const auto chart = shownChart()) {
            items.emplace_back(*chart);
        } else if (currentOutput() >= 0) {
            items.push_back(printItem(run->book->outputs.at(static_cast<std::size_t>(currentOutput()))));
        } else { // the run: everything
            const std::map<std::size_t, ChartEdits> edits = editsOf(*run);
            items.emplace_back(runLines(*run->book));
            for (std::size_t place = 0; place < run->book->outputs.size(); ++place) {
                const ResultsBook::Output& output = run->book->outputs[place];
                const auto edit = edits.find(place);
                if (ResultsBook::repeatsReport(output)) continue;
                addOrigin(output);
                if (edit == edits.end()) {
                    items.push_back(printItem(output));
                } else {
                    items.emplace_back(Chart{edited(std::get<Chart>(output).info, edit->second),
                                             edit->second.numbersAtRisk});
                }
            }
        }
        if (!print(printer, items, run->title))
            throw std::runtime_error(
                tr("The printer '%1' does not answer").arg(printer.printerName()).toStdString());
    });
    if (!problem.isEmpty()) showProblem(problem);
}

void Workbook::printOutput() {
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle(tr("Print"));
    if (dialog.exec() == QDialog::Accepted) printOn(printer);
}

void Workbook::previewOutput() {
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewDialog dialog(&printer, this);
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, [this](QPrinter* page) { printOn(*page); });
    dialog.resize(
        size().expandedTo(QSize(fontMetrics().averageCharWidth() * 100, fontMetrics().height() * 40)));
    dialog.exec();
}

} // namespace korvana::desktop
