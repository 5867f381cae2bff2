#pragma once

#include "support/Export.h"
#include "support/automation/AutomationValue.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <string>
#include <string_view>

namespace ozm {

/// The result of an automation call. `error` begins with "Exception in analysis method: " and the accessor's
/// qualified name ("CSomeDlg::put_Variables"); `detail` says what was wrong.
struct AutomationResult {
    bool ok = true;
    AutomationValue value;
    std::string error;
    std::string detail;
};

/// A dialog as a script sees it. A property is the twin of one control: setting it has the effect of the user
/// setting that control, its range checks and resets included; an action presses a button. Members are found
/// in the dialog's automation interface and in the base dialog interface. The dialog must outlive the object
/// (the host keeps closed modeless dialogs until no script holds them).
class KORVANA_SUPPORT AutomationObject {
public:
    explicit AutomationObject(CAnalysisDialog& dialog) : dialog_(&dialog) {}

    [[nodiscard]] AutomationResult Get(std::string_view member) const;
    AutomationResult Put(std::string_view member, const AutomationValue& value);
    /// Performs an action. For OK the value is whether the dialog closed forward.
    AutomationResult Call(std::string_view member);

    [[nodiscard]] CAnalysisDialog& Dialog() const { return *dialog_; }

private:
    CAnalysisDialog* dialog_;
};

} // namespace ozm
