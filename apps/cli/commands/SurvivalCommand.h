#pragma once

#include "apps/cli/AnalysisCommand.h"
#include "apps/cli/TimesAndCodes.h"

#include <string>
#include <utility>
#include <vector>

namespace korvana::cli {

/// A command that runs an analysis of survival times: chosen in the startup dialog, specified with variables
/// and codes, its results in a dialog of their own. A derived command adds what is its own to the
/// specification.
class SurvivalCommand : public AnalysisCommand {
public:
    SurvivalCommand(Description description, int typeOfAnalysis, const char* resultsDialog)
        : AnalysisCommand(description), typeOfAnalysis_(typeOfAnalysis), resultsDialog_(resultsDialog) {}

protected:
    /// What the specification dialog is given.
    struct Specification {
        TimesAndCodes timesAndCodes;
        std::vector<std::vector<int>> boxes; ///< the variables in each box of the selection, from 1
        std::vector<std::pair<const char*, ozm::AutomationValue>>
            members; ///< besides the selection, in order
    };

    void declareOptions(CLI::App& app) override;
    /// Checks the options of its own against the data and adds what they say. Throws UsageError.
    virtual void specify(const ActiveData& /*data*/, Specification& /*wanted*/) {}

private:
    [[nodiscard]] Analysis load() const final;
    std::vector<ResultMessage> checkData(const ActiveData& data) final;
    bool compute(Script& script) final;

    int typeOfAnalysis_;
    const char* resultsDialog_;
    TimesAndCodesOptions options_;
    Specification wanted_;
};

} // namespace korvana::cli
