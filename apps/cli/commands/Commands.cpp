#include "apps/cli/commands/Commands.h"

namespace korvana::cli {
namespace {

constexpr CommandEntry table[] = {
    {"life-table", "Life table, with distributions fitted to it; from cases or from a table",
     &makeLifeTableCommand},
    {"kaplan-meier", "Product-limit (Kaplan-Meier) estimate of the survival function",
     &makeKaplanMeierCommand},
    {"two-sample", "Comparing two samples: five tests, life tables by group", &makeTwoSampleCommand},
    {"k-sample", "Comparing multiple samples: scores, log-rank tests, curves by group", &makeKSampleCommand},
    {"cox", "Cox regression: proportional hazards, stratified or not, with residuals", &makeCoxCommand},
    {"cox-time", "Cox regression with covariates that change in time, defined by expressions",
     &makeCoxTimeCommand},
    {"regression", "Exponential, lognormal and normal regression; which of them fits best",
     &makeRegressionCommand},
    {"info", "What a data file holds: variables, ranges, codes", &makeInfoCommand},
    {"run", "Runs a Python script with the package korvana, such as a recorded one", &makeRunCommand},
    {"typelib", "The names by which scripts reach the analyses", &makeTypelibCommand},
    {"completion", "Completion for bash, zsh and fish; the manual page", &makeCompletionCommand},
};

} // namespace

std::span<const CommandEntry> commands() {
    return table;
}

} // namespace korvana::cli
