// Exporting and printing from the workbook.
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
#include <optional>
#include <stdexcept>
#include <system_error>

#include "apps/desktop/WaitCursor.h"
#include "apps/desktop/results/ChartView.h"
#include "apps/desktop/results/ExportDialog.h"
#include "apps/desktop/results/FileWriting.h"
#include "apps/desktop/results/OutputExport.h"
#include "apps/desktop/results/OutputText.h"
#include "apps/desktop/results/Printing.h"
#include "apps/desktop/results/ReportView.h"
#include "apps/desktop/results/Workbook.h"
#include "apps/desktop/text/BoxTexts.h"
#include "host/results/DataFile.h"
#include "host/results/OutputFile.h"
#include "host/results/RecordedScript.h"

namespace korvana::desktop {
namespace {

QString filterOf(OutputFormat format) {
    const QString ending = QLatin1String(endingOf(format));
    return QStringLiteral("%1 (*.%2)").arg(ending.toUpper(), ending);
}

std::filesystem::path pathOf(const QString& path) {
    return QDir::toNativeSeparators(path).toStdString();
}

/// The format that belongs to the extension of a file name, among those given.
std::optional<OutputFormat> formatOfName(const QString& name, const std::vector<OutputFormat>& formats) {
    for (const OutputFormat one : formats)
        if (name.endsWith(QLatin1Char('.') + QLatin1String(endingOf(one)), Qt::CaseInsensitive)) return one;
    return std::nullopt;
}

QString unknownEnding(const QString& target, const std::vector<OutputFormat>& formats) {
    QStringList endings;
    for (const OutputFormat one : formats)
        endings += QLatin1Char('.') + QLatin1String(endingOf(one));
    return QObject::tr("The name '%1' does not say in which format to write this output. End it with one of "
                       "these: %2.")
        .arg(QFileInfo(target).fileName(), endings.join(QStringLiteral(", ")));
}

} // namespace

void Workbook::showProblem(const QString& text) {
    QMessageBox box(QMessageBox::Warning, tr("Results"), text, QMessageBox::Ok, this);
    showBox(box);
}

std::map<std::size_t, ChartEdits> Workbook::editsOf(const Run& run) const {
    std::map<std::size_t, ChartEdits> edits;
    for (std::size_t place = 0; place < run.outputs.size(); ++place) {
        const auto* chart = qobject_cast<const ChartView*>(run.outputs[place].view);
        if (chart != nullptr && chart->edits().changesChart()) edits[place] = chart->edits();
    }
    return edits;
}

std::vector<std::size_t> Workbook::removedOf(const Run& run) {
    std::vector<std::size_t> removed;
    for (std::size_t place = 0; place < run.outputs.size(); ++place)
        if (run.outputs[place].removed) removed.push_back(place);
    return removed;
}

std::unique_ptr<Chart> Workbook::shownChart() const {
    const auto* chart = qobject_cast<const ChartView*>(pages_->currentWidget());
    if (chart == nullptr) return nullptr;
    return std::make_unique<Chart>(Chart{chart->shownChart()});
}

void Workbook::exportOutput() {
    Run* run = runOf(currentRun());
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
    QString target;
    std::optional<OutputFormat> named;
    while (!named) {
        if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
        target = dialog.selectedFiles().constFirst();
        named = formatOfName(target, formats);
        if (!named) showProblem(unknownEnding(target, formats));
    }
    const OutputFormat format = *named;
    settings.setValue("export/folder", QFileInfo(target).absolutePath());
    const std::shared_ptr<const Chart> chart = shownChart();
    const Written written =
        writeFiles(this, [&] { writeOutput(*book, place, chart.get(), format, pathOf(target)); });
    if (!written.problem.isEmpty()) return showProblem(written.problem);
    const QString shown = QDir::toNativeSeparators(target);
    if (written.stopped) {
        emit statusText(tr("%1 was not written: the export was stopped.").arg(shown));
        return;
    }
    markExported(*run, place);
    emit statusText(tr("%1 was written.").arg(shown));
}

void Workbook::saveScript() {
    Run* run = runOf(currentRun());
    if (run == nullptr) return;
    QSettings settings;
    QFileDialog dialog(this, tr("Save as Python Script"),
                       settings.value("export/folder", QDir::homePath()).toString());
    dialog.setAcceptMode(QFileDialog::AcceptSave); // which asks before a file is replaced
    dialog.setNameFilters({filterOf(OutputFormat::Py)});
    dialog.setDefaultSuffix(QLatin1String(endingOf(OutputFormat::Py)));
    dialog.selectFile(QStringLiteral("script"));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return;
    const QString target = dialog.selectedFiles().constFirst();
    settings.setValue("export/folder", QFileInfo(target).absolutePath());
    try {
        refuseDataFile(pathOf(target), *run->book);
        writeFile(pathOf(target), recordedScript(*run->book, removedOf(*run)));
        emit statusText(tr("%1 was written.").arg(QDir::toNativeSeparators(target)));
    } catch (const std::exception& failure) {
        showProblem(QString::fromStdString(failure.what()));
    }
}

std::size_t Workbook::writeRun(int number, const std::filesystem::path& directory, FormatSet formats,
                               QStringList& problems, bool* stopped) {
    Run* run = runOf(number);
    if (run == nullptr) return 0;
    const std::shared_ptr<const ResultsBook> book = run->book;
    const auto edits = editsOf(*run);
    const auto removed = removedOf(*run);
    std::size_t files = 0;
    std::vector<std::string> undrawn;
    const Written written = writeFiles(this, [&] {
        const auto write = [&](const ResultsBook& one) {
            return writeBook(one, directory, formats, &undrawn, OthersFiles::Replaced).size();
        };
        // Copies are made only if something was edited.
        files = edits.empty() && removed.empty() ? write(*book) : write(withEdits(*book, edits, removed));
    });
    for (const std::string& one : undrawn)
        problems += QString::fromStdString(one);
    if (!written.problem.isEmpty()) problems += written.problem;
    if (written.done() && undrawn.empty()) markExported(*run, formats);
    if (stopped != nullptr) *stopped = written.stopped;
    return files;
}

std::filesystem::path Workbook::folderOf(const std::filesystem::path& directory, std::size_t number) {
    return directory / ("run-" + std::to_string(number));
}

FilesAtStake Workbook::filesAtStake(const ExportDialog& dialog) const {
    FilesAtStake atStake;
    const std::filesystem::path directory = pathOf(dialog.directory());
    const auto look = [&](const Run& run, const std::filesystem::path& folder) {
        const auto paths = [&folder](const std::vector<std::string>& names) {
            QStringList list;
            for (const std::string& name : names)
                list += QString::fromStdString((folder / name).string());
            return list;
        };
        const std::vector<std::string> names =
            filesToWrite(*run.book, editsOf(run), removedOf(run), dialog.formats());
        if (names.empty()) return; // nothing is written, and nothing removed
        const FolderChanges changes = changesIn(folder, names);
        atStake.replaced += paths(changes.replaced);
        atStake.removed += paths(changes.removed);
    };
    if (!dialog.allRuns()) {
        if (const Run* run = runOf(currentRun())) look(*run, directory);
        return atStake;
    }
    std::size_t number = 0;
    for (const auto& one : runs_)
        if (!one.second.removed) look(one.second, folderOf(directory, ++number));
    return atStake;
}

bool Workbook::exportRuns(bool all) {
    if (currentRun() < 0 && !isEmpty()) showRun(runs_.rbegin()->first);
    const Run* run = runOf(currentRun());
    if (run == nullptr) return true;
    ExportDialog dialog(run->title, runCount(), this);
    if (all && runCount() > 1) dialog.chooseAllRuns();
    dialog.askBeforeReplacing([this](const ExportDialog& chosen) { return filesAtStake(chosen); });
    if (dialog.exec() != QDialog::Accepted) return false;
    const std::filesystem::path directory = pathOf(dialog.directory());
    QStringList problems;
    std::size_t files = 0;
    bool stopped = false;
    if (dialog.allRuns()) {
        std::size_t number = 0;
        for (const auto& one : runs_)
            if (!one.second.removed && !stopped)
                files +=
                    writeRun(one.first, folderOf(directory, ++number), dialog.formats(), problems, &stopped);
    } else {
        files = writeRun(currentRun(), directory, dialog.formats(), problems, &stopped);
    }
    const QString done = stopped ? tr("The export was stopped; %1 files were written to %2.")
                                 : tr("%1 files were written to %2.");
    const bool failed = files == 0 && !problems.isEmpty();
    emit statusText(failed ? QString{} : done.arg(files).arg(dialog.directory()));
    if (!problems.isEmpty()) showProblem(problems.join(QStringLiteral("\n\n")));
    return problems.isEmpty() && !stopped;
}

void Workbook::printOn(QPrinter& printer) {
    const Run* run = runOf(currentRun());
    if (run == nullptr) return;
    QString problem;
    try {
        const WaitCursor cursor;
        std::vector<PrintItem> items;
        // How an output was made is printed above it too.
        const auto addOrigin = [&items, run](std::size_t place) {
            std::vector<std::string> lines;
            for (const QString& line :
                 originText(*run->book, place).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
                lines.push_back(line.toStdString());
            if (!lines.empty()) items.emplace_back(std::move(lines));
        };
        if (currentOutput() >= 0) addOrigin(static_cast<std::size_t>(currentOutput()));
        if (const auto chart = shownChart()) {
            items.emplace_back(*chart);
        } else if (currentOutput() >= 0) {
            items.push_back(printItem(run->book->outputs.at(static_cast<std::size_t>(currentOutput()))));
        } else { // the run: everything
            const std::map<std::size_t, ChartEdits> edits = editsOf(*run);
            items.emplace_back(runLines(*run->book, removedOf(*run)));
            for (std::size_t place = 0; place < run->book->outputs.size(); ++place) {
                const ResultsBook::Output& output = run->book->outputs[place];
                const auto edit = edits.find(place);
                if (run->outputs[place].removed || ResultsBook::repeatsReport(output)) continue;
                addOrigin(place);
                if (edit == edits.end()) {
                    items.push_back(printItem(output));
                } else {
                    items.emplace_back(Chart{edited(std::get<Chart>(output).info, edit->second)});
                }
            }
        }
        if (!print(printer, items, run->title))
            throw std::runtime_error(
                tr("The printer '%1' does not answer").arg(printer.printerName()).toStdString());
    } catch (const std::exception&) {
        problem = problemText(std::current_exception());
    }
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
