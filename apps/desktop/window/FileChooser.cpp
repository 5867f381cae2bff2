#include "apps/desktop/window/FileChooser.h"

#include "apps/desktop/dialogs/ControlField.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>

namespace korvana::desktop {
namespace {

/// ".INI" and ".ini" are the same to the analysis, but not to every file dialog.
QStringList filtersOf(const QString& ending) {
    const auto tr = [](const char* text) { return QCoreApplication::translate("FileChooser", text); };
    if (ending.isEmpty()) return {};
    return {tr("Files (*%1 *%2)").arg(ending.toUpper(), ending.toLower()), tr("All files (*)")};
}

QString folderOf(const std::string& dataFile) {
    const QFileInfo file(QString::fromStdString(dataFile));
    return !dataFile.empty() && file.isFile() ? file.absolutePath() : QString{};
}

} // namespace

std::optional<std::string> FileChooser::choose(const FrontEnd::FileRequest& request,
                                               const std::string& dataFile, QWidget* parent, bool saves) {
    const QString ending = fromView(request.extension);
    const QString name = fromView(request.defaultName);
    QFileDialog dialog(parent, fromView(request.title), folder_.isEmpty() ? folderOf(dataFile) : folder_);
    dialog.setAcceptMode(saves ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(saves ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (const QStringList filters = filtersOf(ending); !filters.isEmpty()) dialog.setNameFilters(filters);
    if (saves) dialog.setDefaultSuffix(ending.startsWith(QLatin1Char('.')) ? ending.mid(1) : ending);
    // "*.INI" is no name, but what the filter says.
    if (!name.contains(QLatin1Char('*'))) dialog.selectFile(name);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    const QString path = dialog.selectedFiles().constFirst();
    folder_ = QFileInfo(path).absolutePath();
    return path.toStdString();
}

std::optional<std::string> FileChooser::toOpen(const FrontEnd::FileRequest& request,
                                               const std::string& dataFile, QWidget* parent) {
    return choose(request, dataFile, parent, false);
}

std::optional<std::string> FileChooser::toSave(const FrontEnd::FileRequest& request,
                                               const std::string& dataFile, QWidget* parent) {
    return choose(request, dataFile, parent, true);
}

} // namespace korvana::desktop
