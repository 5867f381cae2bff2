#include "host/charts/ChartFonts.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QResource>

namespace korvana {
namespace {

constexpr const char* fontFamily = "DejaVu Sans";

/// Makes the fonts known to the application, once for each, as the font database is destroyed with it.
void addFonts() {
    static const QCoreApplication* done = nullptr;
    if (done == QCoreApplication::instance()) return;
    done = QCoreApplication::instance();
    for (const bool bold : {false, true})
        QFontDatabase::addApplicationFontFromData(chartFontData(bold));
}

} // namespace

QByteArray chartFontData(bool bold) {
    const QResource font{QString(bold ? ":/korvana/DejaVuSans-Bold.ttf" : ":/korvana/DejaVuSans.ttf")};
    // The bytes live as long as the program.
    return QByteArray::fromRawData(reinterpret_cast<const char*>(font.data()), font.size());
}

QFont chartFont(int pixels, bool bold) {
    addFonts();
    QFont font(fontFamily);
    font.setPixelSize(pixels);
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting); // same widths at every resolution
    // Independent of the desktop's settings.
    font.setStyleStrategy(QFont::StyleStrategy(QFont::PreferAntialias | QFont::NoSubpixelAntialias));
    return font;
}

void useChartFontWhereThereIsNone() {
    // Font families are listed even without any font.
    if (QFontMetrics(QApplication::font()).inFont('a')) return;
    addFonts();
    QFont font = QApplication::font();
    font.setFamily(fontFamily);
    QApplication::setFont(font);
}

} // namespace korvana
