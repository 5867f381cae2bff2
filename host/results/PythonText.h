#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvana {

/// Values as literals of Python, which reads exactly what was written. No text can end its literal, or be
/// shown as something else than it is.

/// A text in quotes. Bytes that are not UTF-8 become the lone surrogates by which Python keeps them in names
/// of files (PEP 383).
[[nodiscard]] std::string pythonText(std::string_view text);
/// A number that reads back as the same double; a whole one without a point where it is an int of 32 bits.
[[nodiscard]] std::string pythonNumber(double value);
[[nodiscard]] std::string pythonBool(bool value);
/// "[a, b]".
[[nodiscard]] std::string pythonList(const std::vector<std::string>& literals);

/// "before [a, b]", over several lines where it would be too long for one; continued lines are indented.
[[nodiscard]] std::string pythonList(std::string_view before, const std::vector<std::string>& literals);

} // namespace korvana
