#include "module/survdata/ResultsDialog.h"

#include "module/resources/StringIds.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>

namespace ozm::survival {

void ResultsDialog::OnCommand(int control) {
    if (control == ControlCancel) {
        ReleaseResults();
        Analysis().Dialogs().RestoreResultsWindows(*this);
        ExitDialog(SpecificationStep(), ExitMode::Back);
    } else if (!CommonCommand(control)) {
        if (const int message = Output(control); message != 0)
            ShowMessage(message, Filled(StrOutputName, {OutputName(control)}));
    }
}

std::string ResultsDialog::OutputName(int control) const {
    for (const AutomationMember& member : Interface()->members)
        if (member.kind == MemberKind::Action && member.control == control) return std::string{member.help};
    std::string text{ParseControlText(Template().Find(control)->text).text};
    std::erase(text, '&');
    return text;
}

} // namespace ozm::survival
