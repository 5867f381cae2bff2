#pragma once

#include "host/data/DataSet.h"
#include "host/results/OutputOrigin.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <string>

namespace korvana {

/// The properties of a dialog's automation interface with their current values, except those of controls that
/// are greyed out; variables and codes have their names in the data.
[[nodiscard]] DialogSettings settingsOf(const ozm::CAnalysisDialog& dialog, const DataSet& data);

struct ButtonName {
    std::string id;    ///< the action of the automation interface; empty when it has none for the button
    std::string label; ///< as the dialog shows it
};
[[nodiscard]] ButtonName nameOfButton(const ozm::CAnalysisDialog& dialog, int control);

} // namespace korvana
