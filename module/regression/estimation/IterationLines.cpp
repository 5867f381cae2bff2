#include "module/regression/estimation/IterationLines.h"

#include "module/resources/Regression.h"
#include "module/resources/Resources.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>

namespace ozm::survival {
namespace {

constexpr std::size_t mostParametersShown = 5;
constexpr std::size_t mostKept = 5;
constexpr std::size_t iterationWidth = 4;
constexpr std::size_t numberWidth = 7;

std::string Right(std::string text, std::size_t width) {
    if (text.size() < width) text.insert(0, width - text.size(), ' ');
    return text;
}

} // namespace

IterationLines::IterationLines(CAnalysisSupport& host, std::size_t covariates, bool withLikelihood)
    : host_(host), withLikelihood_(withLikelihood),
      header_(Text(withLikelihood ? StrRegIterationHeader : StrRegParametersHeader)) {
    if (covariates > mostParametersShown) header_ += Text(StrRegFirstFive);
    host_.bstart();
    Write(header_);
}

IterationLines::~IterationLines() {
    try {
        host_.dstop();
    } catch (...) { // NOLINT(bugprone-empty-catch): a display that cannot be closed
    }
}

void IterationLines::Add(int iteration, double logLikelihood, std::span<const double> parameters) {
    std::string line = Right(FormatCount(iteration), iterationWidth);
    if (withLikelihood_) line += " " + Right(FormatInWidth(logLikelihood, numberWidth), numberWidth);
    for (const double parameter : parameters.first(std::min(parameters.size(), mostParametersShown)))
        line += " " + Right(FormatInWidth(parameter, numberWidth), numberWidth);
    Keep(std::move(line));
}

void IterationLines::Say(int text) {
    if (!last_.empty()) Keep(Whole(text));
}

void IterationLines::Keep(std::string line) {
    Write(line);
    if (last_.size() == mostKept) last_.erase(last_.begin());
    last_.push_back(std::move(line));
}

std::string IterationLines::Last() const {
    std::string text = header_;
    for (const std::string& line : last_)
        text += "\n" + line;
    return text;
}

} // namespace ozm::survival
