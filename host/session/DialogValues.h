#pragma once

#include "host/data/DataSet.h"
#include "host/results/OutputOrigin.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <string>

namespace korvana {

/// What is said of controls that are greyed out.
enum class Greyed {
    LeftOut, ///< they say nothing to a person
    Taken,   ///< a script sets them: the analysis may come back to one, as to a number where a step is not
             ///< possible
};

/// The properties of a dialog's automation interface with their current values; variables and codes have
/// their names in the data.
[[nodiscard]] DialogSettings settingsOf(const ozm::CAnalysisDialog& dialog, const DataSet& data,
                                        Greyed greyed = Greyed::LeftOut);

struct ButtonName {
    std::string id;    ///< the action of the automation interface; empty when it has none for the button
    std::string label; ///< as the dialog shows it
};
[[nodiscard]] ButtonName nameOfButton(const ozm::CAnalysisDialog& dialog, int control);

} // namespace korvana
