// How the window opens data files.
#include "apps/desktop/data/DataLoader.h"
#include "apps/desktop/data/GridText.h"
#include "apps/desktop/data/OpenOptionsDialog.h"
#include "apps/desktop/text/BoxTexts.h"
#include "apps/desktop/window/AnalysisRunner.h"
#include "apps/desktop/window/MainWindow.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QStatusBar>

namespace korvana::desktop {
namespace {

/// Says why a file was not read. True when the user wants to try other options.
bool triesOptions(const ReadFault& fault, bool mayHelp, QWidget* parent) {
    QMessageBox box(QMessageBox::Warning, MainWindow::tr("Open Data File"), fault.text, QMessageBox::Ok,
                    parent);
    const QPushButton* options =
        mayHelp ? box.addButton(MainWindow::tr("Open &With Options..."), QMessageBox::ActionRole) : nullptr;
    showBox(box);
    return options != nullptr && box.clickedButton() == options;
}

} // namespace

bool MainWindow::loadFile(const QString& path, ReadOptions options) {
    const QString name = QString::fromStdString(runner_->data().dataSet().fileName());
    if (!mayReplaceData(*this, name, edits())) return false;
    for (ReadFault fault; !openDataFile(runner_->data(), path, &fault, this, options);) {
        if (fault.text.isEmpty() || !triesOptions(fault, fault.inText || options.separator, front()))
            return false;
        OpenOptionsDialog dialog(path, options, front());
        if (dialog.exec() != QDialog::Accepted) return false;
        options = dialog.options();
    }
    labelsEdited_ = false;
    recent_.add(path);
    showData();
    return true;
}

bool MainWindow::openFileWith(const QString& path, const ReadOptions& options) {
    if (runner_->isBusy() || !loadFile(path, options)) return false;
    runner_->dataReplaced();
    QStringList notes;
    for (const std::string& note : runner_->data().notes())
        notes << readerText(note);
    statusBar()->showMessage(notes.join(QStringLiteral("  |  ")));
    return true;
}

QString MainWindow::chooseFile() {
    return QFileDialog::getOpenFileName(front(), tr("Open Data File"), {}, dataFileFilter());
}

bool MainWindow::askForFile() {
    const QString path = chooseFile();
    return !path.isEmpty() && openFile(path);
}

void MainWindow::askForFileAndOptions() {
    const QString path = chooseFile();
    if (path.isEmpty()) return;
    OpenOptionsDialog dialog(path, {}, front());
    if (dialog.exec() == QDialog::Accepted) openFileWith(path, dialog.options());
}

bool MainWindow::openFirst() {
    QMessageBox box(QMessageBox::Information, tr("No Data"),
                    tr("There are no data yet; open a data file first."), QMessageBox::Cancel, this);
    QPushButton* open = box.addButton(tr("&Open a Data File..."), QMessageBox::AcceptRole);
    box.setDefaultButton(open);
    showBox(box);
    return box.clickedButton() == open && askForFile();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (runner_->isBusy() || droppedFiles(event->mimeData()).isEmpty()) return;
    event->setDropAction(Qt::CopyAction); // the file stays where it is
    event->accept();
}

void MainWindow::dropEvent(QDropEvent* event) {
    const QStringList paths = droppedFiles(event->mimeData());
    if (paths.isEmpty()) return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // Later, since the program that the files were dragged from waits for this function to return.
    QMetaObject::invokeMethod(
        this, [this, paths] { openDropped(paths); }, Qt::QueuedConnection);
}

void MainWindow::openDropped(const QStringList& paths) {
    if (paths.size() == 1) {
        openFile(paths.front());
        return;
    }
    QMessageBox box(QMessageBox::Warning, tr("Open Data File"),
                    tr("%1 files were dropped, but only one data file can be open. Drop a single file.")
                        .arg(paths.size()),
                    QMessageBox::Ok, front());
    showBox(box);
}

} // namespace korvana::desktop
