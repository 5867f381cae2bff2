#pragma once

#include "support/dialogs/CAnalysisDialog.h"

#include <array>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace korvana::desktop {

/// Pairs of code fields for the variable of one box, filled in when the variable has just two codes. What the
/// user wrote stays: only fields that are unset, or hold what was filled in before, are filled.
class CodePairs {
public:
    explicit CodePairs(const ozm::DialogTemplate& shape);

    struct Fill {
        int control;
        double code; ///< NaN: what was filled in before does not belong to the variable of now
    };
    /// What is to be put after the user has changed a control. The data are read for it once per variable.
    /// @param untouched  whether nothing is being written in the field of a control
    [[nodiscard]] std::vector<Fill> after(ozm::CAnalysisDialog& dialog, int changed,
                                          const std::function<bool(int control)>& untouched);
    /// The other control of the pair, 0 for a control that belongs to none.
    [[nodiscard]] int partnerOf(int control) const;

private:
    struct Pair {
        int role;
        std::array<const ozm::ControlTemplate*, 2> fields;
        int variable = 0; ///< whose codes are known
        std::optional<std::array<ozm::CodeCount, 2>> codes{};
        std::array<double, 2> filled{std::numeric_limits<double>::quiet_NaN(),
                                     std::numeric_limits<double>::quiet_NaN()};
    };

    void fill(Pair& pair, ozm::CAnalysisDialog& dialog, const std::function<bool(int control)>& untouched,
              std::vector<Fill>& fills) const;

    const ozm::ControlTemplate* chooser_ = nullptr;
    std::vector<Pair> pairs_;
};

} // namespace korvana::desktop
