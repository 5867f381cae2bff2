#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// A covariate that an expression over the variables of the data and the time defines.
struct DefinedCovariate {
    std::string name;
    std::string expression;

    friend bool operator==(const DefinedCovariate&, const DefinedCovariate&) = default;
};

inline constexpr std::size_t mostDefined = 40;
// Characters that there is room for in dialogs and files.
inline constexpr std::size_t nameWidth = 8;
inline constexpr std::size_t expressionWidth = 60;

/// The characters of a text in UTF-8.
std::size_t CharactersOf(std::string_view text);
/// The first characters of a clean text, as many as there is room for; clean again.
std::string CutTo(std::string_view text, std::size_t width);
/// A text as it can stand in one line of a file: without formatting and control characters, and without
/// blanks at its ends. Line ends and tabs within become blanks.
std::string CleanText(std::string_view text);

/// The place of a covariate by its name, without regard to the case of ASCII letters.
std::optional<std::size_t> FindDefined(std::span<const DefinedCovariate> list, std::string_view name);
/// The first of X_COV_1, X_COV_2, ... that the list has not.
std::string ProposedName(std::span<const DefinedCovariate> list);

} // namespace ozm::survival
