#include "module/survdata/ResultsDialog.h"

#include "module/resources/StringIds.h"
#include "module/survdata/ReportLines.h"

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
    const int repeated = Template().Find(control)->repeats;
    const int known = repeated != 0 ? repeated : control;
    for (const AutomationMember& member : Interface()->members)
        if (member.kind == MemberKind::Action && member.control == known) return std::string{member.help};
    return {};
}

} // namespace ozm::survival
