#include "apps/desktop/window/UserSettings.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace korvana::desktop {

void useUserSettings() {
    QCoreApplication::setOrganizationName(QStringLiteral("korvana"));
    QCoreApplication::setApplicationName(QStringLiteral("korvana-desktop"));
    QSettings::setDefaultFormat(QSettings::IniFormat);

    QSettings earlier(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("Korvana"),
                      QStringLiteral("korvana-desktop"));
    earlier.setFallbacksEnabled(false);
    const QString file = earlier.fileName();
    if (!QFileInfo::exists(file)) return;
    QSettings settings;
    for (const QString& key : earlier.allKeys())
        if (!settings.contains(key)) settings.setValue(key, earlier.value(key));
    settings.sync();
    if (settings.status() != QSettings::NoError || !QFile::remove(file)) return;
    QDir().rmdir(QFileInfo(file).path()); // only if nothing else is there
}

} // namespace korvana::desktop
