#include "module/survdata/ResultsDialog.h"

#include "module/resources/Shared.h"
#include "module/survdata/ReportLines.h"
#include "support/dialogs/ControlText.h"

namespace ozm::survival {

void ResultsDialog::OnCommand(int control) {
    if (control == ControlCancel) {
        ReleaseResults();
        Analysis().Dialogs().RestoreResultsWindows(*this);
        ExitDialog(SpecificationStep(), ExitMode::Back);
    } else if (!CommonCommand(control)) {
        if (const int message = Output(control); message != 0)
            Analysis().DspMessageBox(MessageStyle::Error, this, message,
                                     OutputName(control) + Reason(message));
    }
}

std::string ResultsDialog::OutputName(int control) const {
    const ControlTemplate* button = Template().Find(control);
    const int known = button->repeats != 0 ? button->repeats : control;
    for (const AutomationMember& member : Interface()->members)
        if (member.kind == MemberKind::Action && member.control == known)
            return Filled(StrOutputName, {PlainControlText(button->text), std::string{member.name}});
    return {};
}

} // namespace ozm::survival
