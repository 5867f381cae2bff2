#include "apps/desktop/data/GridText.h"

#include "apps/desktop/CommandText.h"
#include "host/data/DayNumber.h"
#include "host/data/NumberText.h"
#include "host/results/Utf8.h"

#include <QLocale>
#include <QWidget>
#include <cmath>

namespace korvana::desktop {

QString shown(std::string_view utf8) {
    return QString::fromStdString(oneLine(utf8));
}

QString readerText(std::string_view utf8) {
    return inCommandsOfTheWindow(shown(utf8));
}

QString valueText(const Variable& variable, double value, bool label) {
    if (std::isnan(value)) return {};
    if (label) {
        if (const auto text = variable.labelOf(value)) return shown(*text);
    }
    if (variable.kind == VariableKind::Date) {
        const std::string date = isoDateText(value);
        if (!date.empty()) return QString::fromStdString(date);
    }
    return QString::fromStdString(numberText(value));
}

QString countText(qint64 count) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(count);
}

QString casesText(qint64 count) {
    return countText(count) + (count == 1 ? QStringLiteral(" case") : QStringLiteral(" cases"));
}

namespace {

QColor mixed(const QColor& a, const QColor& b, double share) {
    const auto mix = [share](int x, int y) { return static_cast<int>(std::lround(x + share * (y - x))); };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

} // namespace

QColor quietText(const QPalette& palette) {
    return mixed(palette.color(QPalette::Active, QPalette::Text),
                 palette.color(QPalette::Active, QPalette::Base), 0.42);
}

QColor errorText(const QPalette& palette) {
    const bool dark = palette.color(QPalette::Active, QPalette::Window).lightness() < 128;
    return dark ? QColor(255, 138, 128) : QColor(176, 0, 32);
}

void showAsError(QWidget& label, bool error) {
    QPalette palette = label.parentWidget() != nullptr ? label.parentWidget()->palette() : label.palette();
    if (error) palette.setColor(QPalette::WindowText, errorText(palette));
    label.setPalette(error ? palette : QPalette());
}

} // namespace korvana::desktop
