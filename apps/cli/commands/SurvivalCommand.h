#pragma once

#include "apps/cli/AnalysisCommand.h"
#include "apps/cli/TimesAndCodes.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace korvana::cli {

/// A command that runs an analysis of survival times: it chooses the analysis in the startup dialog, fills in
/// variables and codes in the specification dialog and makes outputs in the results dialog. A derived command
/// adds its own settings to the specification.
class SurvivalCommand : public AnalysisCommand {
public:
    SurvivalCommand(Description description, int typeOfAnalysis, const char* resultsDialog)
        : AnalysisCommand(std::move(description)), typeOfAnalysis_(typeOfAnalysis),
          resultsDialog_(resultsDialog) {}

protected:
    /// The settings for the specification dialog.
    using Members = std::vector<std::pair<const char*, ozm::AutomationValue>>;
    struct Specification {
        std::vector<Members> forms{1}; ///< what comes before the selection, for each run
        TimesAndCodes timesAndCodes;
        std::vector<std::vector<int>> boxes; ///< the variables in each box of the selection, from 1
        Members members;                     ///< apart from the selection, in order
    };

    void declareOptions(CLI::App& app) override;
    /// Checks the command's own options against the data and adds their settings. Throws UsageError.
    virtual void specify(const ActiveData& /*data*/, Specification& /*wanted*/) {}
    /// Does what remains before the specification dialog is confirmed. False when the analysis refuses it.
    virtual bool finishSpecification(Script& /*script*/) { return true; }
    /// A run is about to begin.
    virtual void begin(std::size_t /*run*/) {}
    /// Whether the data hold one case per observation; else `specify` names all variables.
    [[nodiscard]] virtual bool hasCases() const { return true; }
    /// The options for times and codes that were given.
    [[nodiscard]] std::vector<std::string> givenForCases() const { return options_.given(); }
    /// The selected cases (1) that have times and one of the two codes. Throws UsageError.
    [[nodiscard]] std::vector<std::uint8_t> casesWithTimesAndCodes(const ActiveData& data) const;

private:
    [[nodiscard]] Analysis load() const final;
    std::vector<ResultMessage> checkData(const ActiveData& data) final;
    bool compute(Script& script, std::size_t run) final;

    int typeOfAnalysis_;
    const char* resultsDialog_;
    TimesAndCodesOptions options_;
    Specification wanted_;
};

} // namespace korvana::cli
