#pragma once

#include "support/Export.h"

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace ozm {

enum class ControlKind : std::uint8_t {
    PushButton,
    CheckBox,   ///< value: bool
    RadioGroup, ///< value: 1-based choice
    Integer,    ///< value: int
    Real,       ///< value: double, shown with `decimals`
    Text,       ///< value: text
    CodeField, ///< value: double, NaN while unset; offers the codes of the variable selected in `codesOfRole`
    /// Value: 0-based position of the selected entry. With `columns` a list whose entries the dialog sets;
    /// then `noEntry` where none is selected.
    List,
    VariableSelection, ///< value: one list of variable numbers per role
    CodeList,          ///< value: several codes of the variable selected in `codesOfRole`
    TextList,          ///< value: several texts
    NumberList,        ///< value: several numbers
    Summary,           ///< read-only text of several lines
};

/// One target box of a variable-selection control.
struct RoleTemplate {
    std::string_view prompt;
    std::uint8_t list;     ///< which of the analysis's selection lists it fills, 0-based
    std::uint16_t minimum; ///< the fewest variables that OK accepts
    std::uint16_t maximum; ///< the most that the box holds
    bool measures = false; ///< its variables must be numbers or dates, not texts
};

/// One entry of a list or a radio group.
struct ChoiceTemplate {
    int text = 0;    ///< number in the string table; 0: the entry shows no text
    int icon = 0;    ///< number of the icon, 0: none
    int command = 0; ///< command that choosing the entry performs, 0: none
    int member = 0;  ///< value of the automation enumeration that stands for the entry, 0: none
};

/// The numbers that an Integer or Real control accepts; its ends have the tolerance of codes.
struct NumberRange {
    double least = -std::numeric_limits<double>::infinity();
    double greatest = std::numeric_limits<double>::infinity();
    bool withLeast = true; ///< whether the end itself lies in the range
    bool withGreatest = true;
    int message = 0; ///< string number of the message for a number outside; 0: a text that names the range
    int detail = 0;  ///< string number of a further text, with the number given as %1; 0: none
    /// NaN: a number outside is refused when it is set. Else it is accepted, and when the dialog is about to
    /// use it (`CAnalysisDialog::RangeHolds`), the message is shown and this number takes its place.
    double resetTo = std::numeric_limits<double>::quiet_NaN();

    [[nodiscard]] constexpr bool IsLimited() const {
        return least > -std::numeric_limits<double>::infinity() ||
               greatest < std::numeric_limits<double>::infinity();
    }
    [[nodiscard]] constexpr bool IsReset() const { return resetTo == resetTo; }
};

/// Whether a number lies in a range; NaN lies in none that is limited.
KORVANA_SUPPORT bool Contains(const NumberRange& range, double number);
/// The range in words: "from 3 to 30", "of at least 1e-05 and below 1".
KORVANA_SUPPORT std::string RangeInWords(const NumberRange& range);
/// A number in as few digits as tell it from all others.
KORVANA_SUPPORT std::string NumberInWords(double number);

/// One control of a template. Texts may hold an accelerator ("&") and may begin with the number of an icon
/// ("!249S&ummary") or its letter ("ePercentiles"); `ParseControlText` takes them apart.
struct ControlTemplate {
    int id = 0;
    ControlKind kind = ControlKind::PushButton;
    std::string_view text{};
    std::span<const std::uint8_t> pages{}; ///< 0-based tab pages that show it; empty: all of them
    int decimals = 0;
    int codesOfRole = -1;
    std::span<const RoleTemplate> roles{};
    std::span<const ChoiceTemplate> choices{};
    int repeats = 0; ///< another button with the same action, where the dialog has two; 0: none
    /// A code field: the code to suggest where labels and names give no hint; NaN: none.
    double usualCode = std::numeric_limits<double>::quiet_NaN();
    /// A code field: words (lower case) in a value label, or in the variable's name, that mark the code
    /// meant.
    std::span<const std::string_view> codeWords{};
    /// A real number: a proportion from 0 to 1, which people may also write in percent.
    bool isShare = false;
    /// A number list: NaN may stand for a number that is not given; people write it as a point.
    bool mayMiss = false;
    NumberRange range{}; ///< of an Integer or Real control
    /// A window keeps the value from one start of the program to the next: a single number, text or yes or
    /// no.
    bool remembered = false;
    int hint = 0; ///< string number of a text for the status line while the control has the focus; 0: none
    /// A list whose entries the dialog sets (`SetEntries`): the headings of its columns, by string number.
    std::span<const int> columns{};
    /// A text: the most characters that people can type, 0: any number. Scripts and files may give more; the
    /// dialog judges them.
    int most = 0;
    bool hidden = false; ///< for scripts; a window does not show it
    int onEnter = 0;     ///< the control that Enter presses while this one has the focus; 0: OK
    int onDelete = 0;    ///< a list: the button that the Delete key presses; 0: none
    int beside = 0;      ///< a button: the list at whose side it stands; 0: none
    /// A text: an expression; a window offers the names of variables, and those of `choices`.
    bool isExpression = false;
};

/// The value of a list with columns where nothing is selected.
inline constexpr int noEntry = -1;

/// A dialog: its number, title, tab pages and controls in tabbing order.
struct DialogTemplate {
    int number = 0;
    std::string_view title;
    std::span<const std::string_view> pages;
    std::span<const ControlTemplate> controls;

    [[nodiscard]] constexpr const ControlTemplate* Find(int id) const {
        for (const ControlTemplate& control : controls)
            if (control.id == id) return &control;
        return nullptr;
    }
};

/// The parts of a control's text.
struct ControlText {
    int icon = 0;           ///< number before the text, 0: none
    char iconLetter = '\0'; ///< letter before the text
    std::string_view text;  ///< the rest, accelerator marks included
};

/// Takes "!249S&ummary" apart into icon 249 and "S&ummary", "ePercentiles" into icon letter e and
/// "Percentiles".
KORVANA_SUPPORT ControlText ParseControlText(std::string_view text);

/// Identifiers that every dialog shares.
enum CommonControl : int { ControlOk = 1, ControlCancel = 2 };

} // namespace ozm
