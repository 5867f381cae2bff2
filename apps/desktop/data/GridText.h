#pragma once

#include "host/data/DataSet.h"
#include "host/session/ActiveData.h"

#include <QPalette>
#include <QString>
#include <string_view>

class QWidget;

namespace korvana::desktop {

/// A text of the data in one line: line ends, tabs and other control characters become blanks.
QString shown(std::string_view utf8);

/// A message of a reader about a file, naming the menu's command in place of command-line options.
QString readerText(std::string_view utf8);

/// A value as its label, else as a date for a date variable, else as a number; empty for NaN.
/// @param label  false: the code
QString valueText(const Variable& variable, double value, bool label);

/// "1 case", "1,234,567 cases".
QString casesText(qint64 count);

/// A count with separators between thousands.
QString countText(qint64 count);

/// A colour for secondary text: fainter than the text of a palette, but readable on its base, light or dark.
QColor quietText(const QPalette& palette);
/// The colour for errors on the window background of a palette.
QColor errorText(const QPalette& palette);

/// Shows a text of a kind in a label.
void showAsError(QWidget& label, bool error);

} // namespace korvana::desktop
