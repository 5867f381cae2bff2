#include "apps/desktop/text/FixedFont.h"

#include <QApplication>
#include <QFontDatabase>

namespace korvana::desktop {

QFont fixedFont() {
    // The font database is destroyed with its application.
    static const QCoreApplication* added = nullptr;
    if (added != QCoreApplication::instance()) {
        added = QCoreApplication::instance();
        QFontDatabase::addApplicationFont(QStringLiteral(":/korvana/DejaVuSansMono.ttf"));
    }
    QFont font = QApplication::font();
    font.setFamily(QStringLiteral("DejaVu Sans Mono"));
    font.setStyleHint(QFont::Monospace);
    return font;
}

} // namespace korvana::desktop
