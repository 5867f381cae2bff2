#pragma once

#include "host/data/DataSet.h"

#include <stop_token>
#include <string>
#include <string_view>

namespace korvana {

/// A new variable as users write it: NAME = EXPRESSION.
struct Definition {
    std::string name; ///< without backquotes
    std::string expression;
};

/// Reads "months = days / 30.4375"; a name with blanks or signs is in backquotes. The expression is not
/// checked. Throws DataError.
Definition readDefinition(std::string_view text);

/// A name as expressions have it: in backquotes where it has blanks or signs.
std::string nameInExpression(std::string_view name);

/// The definition as a user would write it.
std::string definitionText(const Definition& definition);

/// Refuses a name that a new variable cannot have: empty, taken (also in other capital letters), a number
/// (which would be a variable's number), a word of expressions, with control characters, not UTF-8. Throws
/// DataError.
void requireNewName(const DataSet& data, std::string_view name);

/// A variable computed for every case, not yet part of a data set.
struct ComputedVariable {
    Variable variable; ///< of numbers; its label and its `expression` are the expression
    Column cells;
    std::string note; ///< one or two sentences: the definition, and how many cases have no value
};

/// Computes a variable. A case with a missing value in a variable of the expression has none, unless the
/// expression tests that variable by missing(x); comparisons give 1 or 0. A result that is not finite is a
/// missing value too, and the note counts those and names the first. Throws DataError (name, too many
/// variables), ExpressionError, ReadingStopped (ReadData.h) or std::bad_alloc, nothing else.
/// @param stop  lets another thread stop it
ComputedVariable computeVariable(const DataSet& data, const Definition& definition,
                                 const std::stop_token& stop = {});

/// Computes a variable and appends it, with its note, to the data set. Errors as above; the data set then
/// stays as it was.
void defineVariable(DataSet& data, const Definition& definition, const std::stop_token& stop = {});

} // namespace korvana
