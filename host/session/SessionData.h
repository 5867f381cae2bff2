#pragma once

#include "host/session/SessionParts.h"
#include "support/services/DataService.h"

namespace korvana {

/// The cases of the session's data. A variable number out of range stops the reading.
class SessionData : public ozm::DataService {
public:
    explicit SessionData(const SessionParts& parts) : data_(parts.data) {}

    short cstart(int caseNumber, std::span<double> values, std::span<const int> variables) override;
    void cstarts(int firstCase, std::span<short> answers, std::span<double> values,
                 std::span<const int> variables) override;
    int ss_nb() override { return data_.dataSet().caseCount(); }
    short getmd5(int variable, double& missingCode) override;
    int WeightVariable() override { return data_.weightVariable(); }
    std::string CaseName(int caseNumber) override;
    std::string FileName() override { return data_.dataSet().fileName(); }

private:
    const ActiveData& data_;
};

} // namespace korvana
