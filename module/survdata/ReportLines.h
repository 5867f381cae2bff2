#pragma once

#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace ozm::survival {

/// Writes one line of the text report and ends it.
void WriteLine(CAnalysisSupport& host, std::string_view line);

/// A whole number as text.
std::string FormatCount(long long count);

/// A number to at most `digits` significant digits, without trailing zeros; the same on every machine and in
/// every locale.
std::string FormatNumber(double value, int digits = 8);

/// A number with exactly `decimals` decimals.
std::string FormatFixed(double value, int decimals);

/// A probability to five significant digits; "< 1e-30" below that.
std::string FormatProbability(double p);

/// A number with the fewest digits that identify it.
std::string FormatExact(double value);

/// A number in as many significant digits as a width has room for, in more characters where not even one
/// digit fits.
std::string FormatInWidth(double value, std::size_t width);

/// A code in a field of 10 characters, one less when its magnitude is at least 0.001 and below 1, with as
/// many digits as the field holds; "--" when unset.
std::string FormatCode(double code);

/// A confidence level in percent as column headings show it: 0.95 gives "95", 0.975 gives "97.5".
std::string LevelInPercent(double level);

/// A label for use in a sentence: line breaks as \n, and long labels cut short.
std::string InOneLine(std::string_view label);

/// The value label of a code, where the variable has one.
std::optional<std::string> LabelOfCode(CAnalysisSupport& host, int variable, double code);

/// A code for people: its number, followed by the value label if there is one, "1 (6-MP)".
std::string CodeWithLabel(CAnalysisSupport& host, int variable, double code);

/// The meaning of a code in the data's own words, for legends: "treatment = placebo", "status = 1".
std::string MeaningOfCode(CAnalysisSupport& host, int variable, double code);

/// A text of the string table with values in the places of its %1, %2 ...
std::string Filled(int id, std::initializer_list<std::string> values);

/// A text of the string table as it stands.
std::string Whole(int id);

/// A text of the string table without the blanks at its end.
std::string Trimmed(int id);

/// A variable's name; "--" for variable 0.
std::string VariableName(CAnalysisSupport& host, int variable);
/// The same in quotation marks, for sentences.
std::string QuotedName(CAnalysisSupport& host, int variable);
/// "'a'", "'a' or 'b'", "'a', 'b' or 'c'": the conjunction is a text of the string table.
std::string QuotedNames(CAnalysisSupport& host, std::span<const int> variables, int conjunction);

/// "a, b or c", or "a, b or 7 more": the conjunction and the "more" are texts of the string table
/// (conjunction 0: a comma).
std::string Listed(std::span<const std::string> items, int conjunction, int ofMore = 0, std::size_t more = 0);

} // namespace ozm::survival
