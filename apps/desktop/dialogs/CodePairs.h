#pragma once

#include "support/dialogs/CAnalysisDialog.h"

#include <array>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace korvana::desktop {

/// Pairs of code fields for the variable of one box, filled in when the variable has just two codes. What the
/// user entered stays: only fields that are unset, or hold what was filled in before, are filled.
class CodePairs {
public:
    explicit CodePairs(const ozm::DialogTemplate& shape);

    struct Fill {
        int control;
        double code; ///< NaN: what was filled in belonged to another variable
    };
    /// The codes to fill in after the user has changed a control. This reads the data once per variable.
    /// @param untouched  whether nothing is being typed into the field of a control
    [[nodiscard]] std::vector<Fill> after(ozm::CAnalysisDialog& dialog, int changed,
                                          const std::function<bool(int control)>& untouched);
    /// The other control of the pair, 0 for a control that belongs to none.
    [[nodiscard]] int partnerOf(int control) const;
    /// The code that was filled in for a control and not replaced by the user since, while the variable that
    /// it was filled in for is chosen; NaN: none.
    [[nodiscard]] double filledIn(int control, const ozm::CAnalysisDialog& dialog) const;

    /// What is known of a pair.
    struct Known {
        int variable = 0; ///< whose codes they are
        std::optional<std::array<ozm::CodeCount, 2>> codes{};
        std::array<double, 2> filled{std::numeric_limits<double>::quiet_NaN(),
                                     std::numeric_limits<double>::quiet_NaN()};
    };
    /// Saves what is known of all pairs for the next time the dialog is shown; restores what still applies
    /// then.
    [[nodiscard]] std::vector<Known> known() const;
    void recall(const std::vector<Known>& known, const ozm::CAnalysisDialog& dialog);

private:
    struct Pair : Known {
        int role = 0;
        std::array<const ozm::ControlTemplate*, 2> fields{};
    };
    /// The variable in the box of a pair, 0 when that is empty.
    [[nodiscard]] int variableOf(const Pair& pair, const ozm::CAnalysisDialog& dialog) const;

    void fill(Pair& pair, ozm::CAnalysisDialog& dialog, const std::function<bool(int control)>& untouched,
              std::vector<Fill>& fills) const;

    const ozm::ControlTemplate* chooser_ = nullptr;
    std::vector<Pair> pairs_;
};

} // namespace korvana::desktop
