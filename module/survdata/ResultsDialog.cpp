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
            ShowMessage(message, OutputName(control) + Reason(message));
    }
}

std::string ResultsDialog::OutputName(int control) const {
    const ControlTemplate* button = Template().Find(control);
    std::string caption;
    for (const char c : ParseControlText(button->text).text)
        if (c != '&' && !(c == ' ' && caption.ends_with(' '))) caption += c;
    const int known = button->repeats != 0 ? button->repeats : control;
    for (const AutomationMember& member : Interface()->members)
        if (member.kind == MemberKind::Action && member.control == known)
            return Filled(StrOutputName, {caption, std::string{member.name}});
    return {};
}

} // namespace ozm::survival
