#pragma once

#include "host/results/OutputOrigin.h"
#include "host/session/ActiveData.h"
#include "support/dialogs/CAnalysisDialog.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace korvana {

/// Follows the dialogs of a session, to record what each output was made from. It knows dialogs by their
/// templates and automation tables only.
class OriginRecorder final : public ozm::DialogObserver {
public:
    explicit OriginRecorder(const ActiveData& data) : data_(data) {}

    /// Forgets the run; the step table starts again.
    void restart();
    /// A dialog was accepted: the results that follow are of its settings, and of the data as they were when
    /// its button was pressed.
    void accepted(const ozm::CAnalysisDialog& dialog);
    /// A modal dialog was accepted on the way to the results, which are of its settings, too.
    /// @param asked  what it was set to when its button was pressed
    void alsoAccepted(const ozm::CAnalysisDialog& dialog, std::vector<Setting> asked);
    /// The answer to a yes/no question of the analysis.
    void answered(bool yes);
    /// The analysis changed selection or weights itself, while a button's command runs.
    void dataUseChanged() { stateAtPress_ = data_.state(); }

    /// The analysis remarks on the run that its dialog is about to start.
    void remark(std::string text) { remarks_.push_back(std::move(text)); }

    /// The origin of outputs made at this moment.
    [[nodiscard]] std::shared_ptr<const OutputOrigin> current() const;
    /// The origin of the current results; nullptr before a dialog was accepted.
    [[nodiscard]] const std::shared_ptr<const RunOrigin>& run() const { return run_; }

    void CommandBegins(ozm::CAnalysisDialog& dialog, int control) override;
    void CommandEnded(ozm::CAnalysisDialog& dialog, int control, bool succeeded) override;

private:
    std::shared_ptr<RunOrigin> runWith(const ozm::CAnalysisDialog& dialog) const;

    const ActiveData& data_;
    DataState stateAtPress_;
    std::string weightAtPress_;
    std::vector<Setting> askedAtPress_;
    std::vector<std::string> remarks_;      ///< since a button was pressed
    std::shared_ptr<OutputOrigin> pressed_; ///< nullptr while no command runs
    std::shared_ptr<const RunOrigin> run_;
};

} // namespace korvana
