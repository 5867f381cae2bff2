#pragma once

#include <QSettings>

#include <memory>
#include <set>

namespace ozm {
class CAnalysisDialog;
}

namespace korvana::desktop {

/// The values of controls that are kept from one start of the program to the next, of any analysis: a
/// template says which.
class RememberedValues {
public:
    /// @param settingsFile  where they are kept; empty: with the user's settings of the program
    explicit RememberedValues(const QString& settingsFile = {});

    /// Sets the controls of a dialog that has just opened. Only once for each dialog: from then on the
    /// analysis itself knows. A value that no longer fits its control is ignored.
    void recall(ozm::CAnalysisDialog& dialog);
    void keep(ozm::CAnalysisDialog& dialog);

private:
    std::unique_ptr<QSettings> settings_;
    std::set<int> recalled_; ///< numbers of templates
};

} // namespace korvana::desktop
