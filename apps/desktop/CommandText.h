#pragma once

#include <QRegularExpression>
#include <QString>

namespace korvana::desktop {

/// What a reader of files says, with the window's command in place of options of the command line.
inline QString inCommandsOfTheWindow(QString text) {
    static const QRegularExpression option(QStringLiteral(R"(\(--[a-z][^)]*\))"));
    return text.replace(option, QStringLiteral("(File, Open With Options)"));
}

} // namespace korvana::desktop
