#pragma once

#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace ozm::survival {

/// The lines of an estimation in the host's iteration window: a header, then one per iteration with its
/// number, the log-likelihood unless the model computes none on the way, and the first five parameters. Keeps
/// the last ones for messages.
class IterationLines {
public:
    IterationLines(CAnalysisSupport& host, std::size_t covariates, bool withLikelihood);
    ~IterationLines();
    IterationLines(const IterationLines&) = delete;
    IterationLines& operator=(const IterationLines&) = delete;

    void Add(int iteration, double logLikelihood, std::span<const double> parameters);
    /// What is done after the first iterations, by the number of a text; nothing before them.
    void Say(int text);
    /// The last lines, at most five, the header above them.
    [[nodiscard]] std::string Last() const;

private:
    void Write(const std::string& line) { host_.Iterations().AddText(line); }
    void Keep(std::string line);

    CAnalysisSupport& host_;
    bool withLikelihood_;
    std::string header_;
    std::vector<std::string> last_;
};

} // namespace ozm::survival
