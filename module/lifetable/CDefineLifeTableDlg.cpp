#include "module/lifetable/CDefineLifeTableDlg.h"

#include "module/lifetable/TableReader.h"

#include <algorithm>
#include <array>

namespace ozm::survival {

CDefineLifeTableDlg::CDefineLifeTableDlg(CAnalysisSupport& host, SharedSettings& shared, LifeState& state)
    : LifeSpecification(host, lifeTableTemplate, lifeTableInterface, shared, state, InputDataType::Table) {}

void CDefineLifeTableDlg::OnOpen() {
    LifeSpecification::OnOpen();
    TurnWeightsOff(nullptr); // the dialog is not shown yet
    given_ = Settings().enteringGiven;
    if (given_) SetValue(LifeEntering, int{Settings().entering});
    ShowEntering();
}

void CDefineLifeTableDlg::OnValueChanged(int control) {
    if (control == LifeEntering) {
        Settings().entering = ValueAs<int>(control);
        Settings().enteringGiven = given_ = true;
        return;
    }
    LifeSpecification::OnValueChanged(control);
    if (control == SpecifyVariables) ShowEntering();
}

bool CDefineLifeTableDlg::OnCommand(int control) {
    const bool done = LifeSpecification::OnCommand(control);
    if (control == SelectCases) ShowEntering(); // of the cases that are selected now
    return done;
}

void CDefineLifeTableDlg::TakeAll() {
    const bool given = given_;
    SpecificationDialog::TakeAll();
    Settings().enteringGiven = given_ = given;
}

bool CDefineLifeTableDlg::AllSelected() const {
    return std::ranges::all_of(std::array{ListIntervalLimits, ListWithdrawn, ListDying},
                               [this](SelectionListId list) { return Shared().List(list).size() == 1; });
}

bool CDefineLifeTableDlg::SelectionsAreValid() {
    if (!AllSelected()) {
        ShowMessage(StrLifeSelectTable);
        return false;
    }
    TurnWeightsOff(this);
    return true;
}

void CDefineLifeTableDlg::ShowEntering() {
    if (given_) return;
    int number = LifeSettings::leastEntering;
    if (AllSelected()) {
        IntervalCounts counts;
        TableRows rows;
        if (ReadTable(Analysis(), Shared(), counts, rows) == LifeStatus::Success)
            number = static_cast<int>(EnteringFromData(counts));
    }
    SetValue(LifeEntering, number);
}

void CDefineLifeTableDlg::ShowAfterRun(const LifeResults& results) {
    if (results.held && !given_) SetValue(LifeEntering, static_cast<int>(results.valid));
}

} // namespace ozm::survival
