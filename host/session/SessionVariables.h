#pragma once

#include "host/session/SessionParts.h"
#include "support/services/VariableService.h"

namespace korvana {

/// The variables of the session's data.
class SessionVariables : public ozm::VariableService {
public:
    explicit SessionVariables(const SessionParts& parts) : data_(parts.data) {}

    int NumberOfVariables() override { return data_.dataSet().variableCount(); }
    short getvn5(int variable, std::string& name) override;
    std::string VariableLabel(int variable) override;
    int FindVariable(std::string_view name) override;
    bool HoldsTexts(int variable) override;
    bool HoldsDates(int variable) override;
    int vvlcod8(int variable, ozm::LabelLookup mode, std::string& text, double& value) override;
    int ReadDataToGetDefaultCodes(int variable, const ozm::DefaultCodeOptions& options,
                                  std::vector<ozm::CodeCount>& codes) override;

private:
    [[nodiscard]] bool exists(int variable) const {
        return variable >= 1 && variable <= data_.dataSet().variableCount();
    }
    const ActiveData& data_;
};

} // namespace korvana
