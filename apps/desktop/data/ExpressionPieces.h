#pragma once

#include "host/data/Variable.h"

#include <QString>

namespace korvana::desktop {

/// A variable's name as expressions write it: in backquotes if it is not a plain word or has another meaning.
QString expressionName(const std::string& name);

/// A value as expressions write it: a number, a date, or the text of a text variable in quotes.
QString expressionValue(const Variable& variable, double value);

/// What a chosen value adds to an expression: the value after an operator, "= value" after the variable, else
/// "variable = value".
/// @param before  the text before it, without trailing blanks
QString comparisonPiece(const Variable& variable, double value, const QString& before);

} // namespace korvana::desktop
