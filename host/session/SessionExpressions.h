#pragma once

#include "host/session/SessionParts.h"
#include "support/services/ExpressionService.h"

namespace korvana {

/// Formulas over the variables of the session's data. A value that equals its variable's missing-data code
/// counts as missing.
class SessionExpressions : public ozm::ExpressionService {
public:
    explicit SessionExpressions(const SessionParts& parts) : data_(parts.data) {}

    short COMP(std::string_view text, std::span<const std::string> extraNames,
               std::unique_ptr<ozm::CompiledExpression>& compiled, std::string& error) override;
    int RunSpreadsheetFormula(std::span<const double> values, const ozm::CompiledExpression& compiled,
                              double& result) override;
    int RunSpreadsheetFormulas(std::span<const std::span<const double>> columns,
                               const ozm::CompiledExpression& compiled, std::span<double> results) override;

private:
    const ActiveData& data_;
};

} // namespace korvana
