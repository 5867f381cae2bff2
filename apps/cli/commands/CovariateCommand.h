#pragma once

#include "apps/cli/LevelOption.h"
#include "apps/cli/commands/CovariateOptions.h"
#include "apps/cli/commands/EstimationOptions.h"
#include "apps/cli/commands/SurvivalCommand.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korvana::cli {

/// A command that fits a regression model: the covariates, how its parameters are estimated, and for which
/// values of the covariates survival is shown. A derived command adds the model.
class CovariateCommand : public SurvivalCommand {
protected:
    CovariateCommand(Description description, const EstimationOptions::Help& help);

    /// Declares the options of the model.
    virtual void declareModel(CLI::App& app) = 0;
    /// Leaves out of `cases` (1) those that do not count for the model. Throws UsageError.
    virtual void keepCounting(const ActiveData& /*data*/, std::vector<std::uint8_t>& /*cases*/) const {}
    /// Adds the settings of the model; returns the variables (from 1) that it needs beside the covariates.
    /// Throws UsageError.
    virtual std::vector<int> specifyModel(const ActiveData& data, Specification& wanted) = 0;
    /// The parameters of the model that are not coefficients of covariates.
    [[nodiscard]] virtual std::vector<std::string> furtherParameters() const { return {}; }

    void declareOptions(CLI::App& app) override;
    void checkOptions() override;
    void begin(std::size_t run) override;
    [[nodiscard]] std::string advice(int message) const override;
    [[nodiscard]] bool isMadeUnasked(const Output& output, const Script& script) const override;
    [[nodiscard]] std::vector<Settings> settingsOf(const Output& output) const override;
    [[nodiscard]] const EstimationOptions& estimation() const { return estimation_; }

private:
    void prepareData(ActiveData& data) final;
    void specify(const ActiveData& data, Specification& wanted) final;
    void fillIn(ozm::AutomationObject& dialog) final { estimation_.put(dialog); }
    bool answer(const ResultMessage& /*question*/) final { return estimation_.goesOn(); }
    void prepareOutputs(Script& script) final;

    CovariateOptions covariates_;
    EstimationOptions estimation_;
    LevelOption level_;
    bool means_ = false;
    std::vector<std::string> at_;
    std::vector<std::vector<double>> valuesAt_;
};

} // namespace korvana::cli
