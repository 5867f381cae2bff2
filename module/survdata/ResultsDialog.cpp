#include "module/survdata/ResultsDialog.h"

#include "module/resources/Shared.h"
#include "module/survdata/ReportLines.h"
#include "support/dialogs/ControlText.h"

namespace ozm::survival {

bool ResultsDialog::OnCommand(int control) {
    // Another analysis object may have started since: then any results are not this dialog's.
    const bool own = Shared().owner == &Analysis();
    if (control == ControlCancel) {
        if (own) ReleaseResults();
        Analysis().Dialogs().RestoreResultsWindows(*this);
        ExitDialog(SpecificationStep(), ExitMode::Back);
        return true;
    }
    if (CommonCommand(control)) return true;
    const OutputResult result = own && HasResults() ? Output(control) : OutputResult::Failed(StrNoResults);
    if (result.message != 0)
        Analysis().DspMessageBox(MessageStyle::Error, this, result.message,
                                 OutputName(control) + Reason(result.message));
    return result.made;
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
