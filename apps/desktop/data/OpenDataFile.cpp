#include "apps/desktop/BusyWait.h"
#include "apps/desktop/data/DataLoader.h"
#include "apps/desktop/text/BoxTexts.h"

#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QUrl>
#include <utility>

namespace korvana::desktop {

namespace {

/// Asks how a date such as 02/03/1995 is to be read; no value when cancelled.
std::optional<DateOrder> askDateOrder(const QString& why, const std::vector<DateOrder>& orders,
                                      QWidget* parent) {
    QMessageBox box(QMessageBox::Question, QObject::tr("Open"), why, QMessageBox::Cancel, parent);
    box.setInformativeText(QObject::tr("In which order are dates written in the file?"));
    std::vector<std::pair<QAbstractButton*, DateOrder>> choices;
    for (const DateOrder order : orders) {
        const QString text = order == DateOrder::DayMonthYear   ? QObject::tr("&Day, month, year")
                             : order == DateOrder::MonthDayYear ? QObject::tr("&Month, day, year")
                                                                : QObject::tr("&Year, month, day");
        choices.emplace_back(box.addButton(text, QMessageBox::AcceptRole), order);
    }
    showBox(box);
    for (const auto& [button, order] : choices)
        if (box.clickedButton() == button) return order;
    return std::nullopt;
}

struct Read {
    std::optional<DataSet> data;
    ReadFault fault; ///< empty when the file was read or reading was cancelled
    std::vector<DateOrder> dateOrders;
    bool close = false; ///< the window that waits for the data is to close
};

/// The file that is read, with its size if that is known.
QString sourceText(const QString& path) {
    if (path == QLatin1String("-")) return QObject::tr("standard input");
    const QFileInfo file(path);
    if (!file.isFile()) return file.fileName(); // a pipe has no size
    return QObject::tr("%1 (%2)").arg(file.fileName(), QLocale::c().formattedDataSize(file.size()));
}

Read readFile(const QString& path, const ReadOptions& options, QWidget* parent) {
    Read read;
    DataLoader loader;
    BusyWait wait(parent, QObject::tr("Open"), QObject::tr("Reading %1 ...").arg(sourceText(path)),
                  [&loader] { loader.cancel(); });
    const QObject life; // limits the life of the connections
    QObject::connect(&loader, &DataLoader::loaded, &life, [&wait] { wait.end(); });
    QObject::connect(&loader, &DataLoader::cancelled, &life, [&wait] { wait.end(); });
    QObject::connect(&loader, &DataLoader::failed, &life, [&](const QString& text) {
        read.fault = {text, loader.faultInText()};
        wait.end();
    });
    loader.load(path, options);
    static_cast<void>(wait.run()); // if the program ends, the loader is stopped
    read.close = wait.closes();
    wait.closeIfWanted();
    read.data = loader.take();
    read.dateOrders = loader.dateOrders();
    return read;
}

} // namespace

bool openDataFile(ActiveData& data, const QString& path, ReadFault* fault, QWidget* parent,
                  ReadOptions options) {
    Read read = readFile(path, options, parent);
    if (!read.dateOrders.empty() && !read.close) {
        options.dates = askDateOrder(read.fault.text, read.dateOrders, parent);
        read = options.dates ? readFile(path, options, parent) : Read{};
    }
    if (fault != nullptr) *fault = read.fault;
    if (read.close || !read.data) return false;
    data.open(std::move(*read.data));
    return true;
}

QString dataFileFilter() {
    return QObject::tr("Data files (*.csv *.tsv *.tab *.txt *.dat *.gz);;All files (*)");
}

QStringList droppedFiles(const QMimeData* mime) {
    QStringList files;
    if (mime == nullptr) return files;
    for (const QUrl& url : mime->urls())
        if (url.isLocalFile()) files += url.toLocalFile();
    return files;
}

} // namespace korvana::desktop
