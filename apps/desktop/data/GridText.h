#pragma once

#include "host/data/DataSet.h"
#include "host/session/ActiveData.h"

#include <QPalette>
#include <QString>
#include <string_view>

class QWidget;

namespace korvana::desktop {

/// A text of the data for one line of the screen: line ends, tabs and other control characters become blanks.
QString shown(std::string_view utf8);

/// What a reader has to say about a file: in place of options of the command line it names the menu's
/// command.
QString readerText(std::string_view utf8);

/// "number", "text", "date".
QString kindName(VariableKind kind);

/// A value as its label, else as a date for a date variable, else as a number; empty for NaN.
/// @param label  false: the code
QString valueText(const Variable& variable, double value, bool label);

/// "1 case", "1,234,567 cases".
QString casesText(qint64 count);

/// Counts with their thousands kept apart.
QString countText(qint64 count);

/// Text that steps back behind the other text of a palette and stays readable on its base, light or dark.
QColor quietText(const QPalette& palette);
/// The colour of an error on the window of a palette.
QColor errorText(const QPalette& palette);

/// Shows a text of a kind in a label.
void showAsError(QWidget& label, bool error);

} // namespace korvana::desktop
