#include "apps/desktop/InputGate.h"
#include "apps/desktop/data/DataLoader.h"

#include <QEventLoop>
#include <QFileInfo>
#include <QLocale>
#include <QMimeData>
#include <QProgressDialog>
#include <QUrl>

namespace korvana::desktop {

bool openDataFile(ActiveData& data, const QString& path, QString* error, QWidget* parent) {
    constexpr int patience = 150; // milliseconds: shorter than that, a busy sign only flickers
    QString problem;
    bool close = false; ///< the window that waits for the data is to go
    DataLoader loader;
    QEventLoop loop;
    QObject::connect(&loader, &DataLoader::loaded, &loop, &QEventLoop::quit);
    QObject::connect(&loader, &DataLoader::cancelled, &loop, &QEventLoop::quit);
    QObject::connect(&loader, &DataLoader::failed, &loop, [&](const QString& text) {
        problem = text;
        loop.quit();
    });
    loader.load(path);
    if (loader.wait(patience)) {
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    } else {
        const QFileInfo file(path);
        QProgressDialog busy(QObject::tr("Reading %1 (%2) ...")
                                 .arg(file.fileName(), QLocale::c().formattedDataSize(file.size())),
                             QObject::tr("Cancel"), 0, 0, parent);
        busy.setWindowTitle(QObject::tr("Open"));
        busy.setMinimumDuration(0);
        QObject::connect(&busy, &QProgressDialog::canceled, &loader, &DataLoader::cancel);
        const InputGate gate(busy, parent, [&] {
            close = true;
            loader.cancel();
        });
        busy.show();
        loop.exec();
    }
    if (error != nullptr) *error = problem;
    if (close && parent != nullptr) {
        QMetaObject::invokeMethod(parent, &QWidget::close, Qt::QueuedConnection);
        return false;
    }
    std::optional<DataSet> read = loader.take();
    if (!read) return false;
    data.open(std::move(*read));
    return true;
}

QString dataFileFilter() {
    return QObject::tr("Data files (*.csv *.tsv *.tab *.txt *.dat *.gz);;All files (*)");
}

QString droppedFile(const QMimeData* mime) {
    if (mime == nullptr) return {};
    for (const QUrl& url : mime->urls())
        if (url.isLocalFile()) return url.toLocalFile();
    return {};
}

} // namespace korvana::desktop
