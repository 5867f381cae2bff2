#pragma once

#include "module/regression/RegressionSpecification.h"

namespace ozm::survival {

/// Specification of a proportional hazards model whose covariates are expressions over the variables of the
/// data and the time: a list of them, kept in files if wanted. OK checks the selections and goes on to the
/// preparation of the data.
class CDefineRegDlg2 final : public RegressionSpecification {
public:
    CDefineRegDlg2(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state);

protected:
    void OnOpen() override;
    bool OnCommand(int control) override;
    void OnValueChanged(int control) override;
    void TakeAll() override;
    void Run() override;

private:
    /// Shows the list, with a row selected (-1: none).
    void ShowList(int selected);
    /// Puts the fields into the list: as a new covariate, or in place of the one selected. False after a
    /// message.
    bool TakeFields(bool replace);
    /// What stands in the fields, if it was not taken yet: in place of the one selected, where it has its
    /// name, else as a new covariate. False after a message.
    bool TypedIsTaken();
    void ShowFault(const DefinedCovariate& covariate, const std::string& why);
    bool Delete();
    bool Open();
    /// False after a message about what is wrong.
    bool CovariatesAreValid();
};

} // namespace ozm::survival
