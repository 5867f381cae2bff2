#include "apps/desktop/data/RecentFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>

namespace korvana::desktop {
namespace {

const QString key = QStringLiteral("recentFiles"); // NOLINT(cert-err58-cpp): a literal, nothing is allocated

/// An ampersand in a menu's text would mark a key.
QString menuText(QString text) {
    return text.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

} // namespace

RecentFiles::RecentFiles(const QString& settingsFile)
    : settings_(settingsFile.isEmpty() ? std::make_unique<QSettings>()
                                       : std::make_unique<QSettings>(settingsFile, QSettings::IniFormat)) {}

QStringList RecentFiles::files() const {
    QStringList files = settings_->value(key).toStringList();
    files.removeAll(QString());
    return files.mid(0, most);
}

void RecentFiles::add(const QString& path) {
    if (path == QLatin1String("-")) return; // standard input is read once
    const QString file = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    QStringList list = files();
    list.removeAll(file);
    list.prepend(file);
    store(list.mid(0, most));
}

void RecentFiles::remove(const QString& path) {
    QStringList list = files();
    list.removeAll(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
    store(list);
}

void RecentFiles::clear() {
    store({});
}

void RecentFiles::store(const QStringList& list) {
    settings_->setValue(key, list);
    settings_->sync();
}

void RecentFiles::fill(QMenu& menu, const std::function<void(const QString& path)>& open) {
    menu.clear();
    int number = 0;
    const QStringList all = files();
    for (const QString& path : all) {
        const QFileInfo file(path);
        QString text = menuText(file.fileName());
        for (const QString& other : all) // two files of the same name are told apart by their folders
            if (other != path && QFileInfo(other).fileName() == file.fileName()) {
                text += QStringLiteral(" \u2013 ") + menuText(QDir::toNativeSeparators(file.path()));
                break;
            }
        const QString prefix = ++number < 10 ? QStringLiteral("&%1  ").arg(number) : QStringLiteral("    ");
        QAction* action = menu.addAction(prefix + text);
        action->setToolTip(path);
        action->setStatusTip(path);
        QObject::connect(action, &QAction::triggered, &menu, [open, path] { open(path); });
    }
    menu.setToolTipsVisible(true);
    if (all.isEmpty()) {
        menu.addAction(QMenu::tr("(no files yet)"))->setEnabled(false);
        return;
    }
    menu.addSeparator();
    QObject::connect(menu.addAction(QMenu::tr("&Clear List")), &QAction::triggered, &menu,
                     [this] { clear(); });
}

} // namespace korvana::desktop
