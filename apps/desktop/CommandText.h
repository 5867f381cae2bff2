#pragma once

#include <QRegularExpression>
#include <QString>

namespace korvana::desktop {

/// A message of a file reader, naming the window's command in place of command-line options.
inline QString inCommandsOfTheWindow(QString text) {
    static const QRegularExpression option(QStringLiteral(R"(\(--[a-z][^)]*\))"));
    return text.replace(option, QStringLiteral("(File, Open With Options)"));
}

} // namespace korvana::desktop
