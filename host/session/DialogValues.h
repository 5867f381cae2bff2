#pragma once

#include "host/data/DataSet.h"
#include "host/results/OutputOrigin.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <string>

namespace korvana {

/// The properties of a dialog's automation interface with the values that they have now, variables and codes
/// named as the data name them.
[[nodiscard]] DialogSettings settingsOf(const ozm::CAnalysisDialog& dialog, const DataSet& data);

struct ButtonName {
    std::string id;    ///< the action of the automation interface; empty when it has none for the button
    std::string label; ///< as the dialog shows it
};
[[nodiscard]] ButtonName nameOfButton(const ozm::CAnalysisDialog& dialog, int control);

} // namespace korvana
