#pragma once

#include "host/session/SessionParts.h"
#include "support/services/ProgressService.h"

namespace korvana {

/// Progress goes to the observers; stop requests come from the session's signals. A stop test without a
/// pending signal costs one load.
class SessionProgress : public ozm::ProgressService {
public:
    explicit SessionProgress(SessionParts& parts) : parts_(parts), iterations_(*this) {}

    void dstart(unsigned count) override;
    void dstop() override { parts_.observers.computationEnded(); }
    void termom(unsigned count) override;
    void bstart() override { dstart(0); }
    void dsp_st() override { parts_.observers.processEvents(); }
    void d_stat(std::string_view text) override { parts_.observers.status(text); }
    void d_pbar(std::string_view text) override { parts_.observers.progressCaption(text); }
    bool pcancel() override { return parts_.stops->any() && cancelled(); }
    bool IsExternallyCancelled() override { return parts_.stops->any() && stopped(); }
    const std::atomic<unsigned>* StopWord() override { return &parts_.stops->word(); }
    ozm::CIterDisplay& Iterations() override { return iterations_; }

private:
    struct IterationLines final : ozm::CIterDisplay {
        explicit IterationLines(SessionProgress& progress) : owner(progress) {}
        void AddText(std::string_view line) override;
        bool WasCanceled() override { return owner.parts_.stops->any() && owner.cancelled(); }
        SessionProgress& owner;
    };

    void processEvents();
    bool cancelled();
    bool stopped();

    SessionParts& parts_;
    IterationLines iterations_;
    unsigned units_ = 0;
    unsigned done_ = 0;
};

} // namespace korvana
