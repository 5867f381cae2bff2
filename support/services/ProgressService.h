#pragma once

#include "support/CIterDisplay.h"

#include <atomic>
#include <string_view>

namespace ozm {

/// Progress display and stop requests. The stop tests are called once per case, so they must be fast.
class ProgressService {
public:
    virtual ~ProgressService() = default;

    /// Opens the progress display of a computation of `count` units; `dstop` closes it.
    virtual void dstart(unsigned count) = 0;
    virtual void dstop() = 0;
    /// `count` units are done.
    virtual void termom(unsigned count) = 0;
    /// Shows that a computation of unknown length is running; `dsp_st` redraws the display at once.
    virtual void bstart() = 0;
    virtual void dsp_st() = 0;

    /// Status-line text, and the caption of the progress bar.
    virtual void d_stat(std::string_view text) = 0;
    virtual void d_pbar(std::string_view text) = 0;

    /// Stop requested in the progress display; stop requested from outside the analysis (a script, a signal).
    virtual bool pcancel() = 0;
    virtual bool IsExternallyCancelled() = 0;

    /// A word that is not 0 whenever one of the three stop tests may say yes or has something to do, so that
    /// a loop need not ask them while it is 0. It is set by other threads and lives as long as the service.
    /// nullptr: there is none, they must be asked.
    virtual const std::atomic<unsigned>* StopWord() { return nullptr; }

    /// The host's iteration window; it lives as long as the service.
    virtual CIterDisplay& Iterations() = 0;
};

} // namespace ozm
