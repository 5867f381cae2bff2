#include "host/charts/ChartText.h"

#include <QFontMetricsF>

#include "host/results/Utf8.h"

namespace korvana {
namespace {

/// Longer texts cannot be shown anyway, and measuring them is slow.
constexpr std::size_t mostCharacters = 2000;

QString plain(std::string_view text) {
    return QString::fromStdString(oneLine(text.substr(0, 4 * mostCharacters), mostCharacters)).simplified();
}

} // namespace

QLocale plainLocale() {
    QLocale locale = QLocale::c();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale;
}

QString elidedLine(std::string_view text, const QFont& font, int width) {
    return QFontMetricsF(font).elidedText(plain(text), Qt::ElideRight, width);
}

QStringList wrappedLines(std::string_view text, const QFont& font, int width, int most) {
    const QFontMetricsF metrics(font);
    const QStringList words = plain(text).split(' ', Qt::SkipEmptyParts);
    QStringList lines;
    QString line;
    for (qsizetype i = 0; i < words.size(); ++i) {
        const QString longer = line.isEmpty() ? words[i] : line + ' ' + words[i];
        if (line.isEmpty() || metrics.horizontalAdvance(longer) <= width) {
            line = longer;
            continue;
        }
        if (lines.size() + 1 == most) { // the rest goes onto the last line, to be cut there
            line += ' ' + words.mid(i).join(' ');
            break;
        }
        lines.append(metrics.elidedText(line, Qt::ElideRight, width));
        line = words[i];
    }
    if (!line.isEmpty()) lines.append(metrics.elidedText(line, Qt::ElideRight, width));
    return lines;
}

} // namespace korvana
