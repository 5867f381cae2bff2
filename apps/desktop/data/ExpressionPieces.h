#pragma once

#include "host/data/Variable.h"

#include <QString>

namespace korvana::desktop {

/// A variable's name as an expression takes it: in backquotes where it is no plain word or has another
/// meaning.
QString expressionName(const std::string& name);

/// A value as an expression takes it: a number, a date, or the text of a text variable in quotes.
QString expressionValue(const Variable& variable, double value);

/// What a chosen value adds to an expression: the value behind a sign, "= value" behind the variable, else
/// "variable = value".
/// @param before  what stands before it, without blanks at its end
QString comparisonPiece(const Variable& variable, double value, const QString& before);

} // namespace korvana::desktop
