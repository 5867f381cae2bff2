#pragma once

#include "host/results/ResultsBook.h"
#include "support/dialogs/CAnalysisModelessDialog.h"

#include <string_view>
#include <vector>

namespace korvana {

/// Follows a session: a window, a progress line, a recorder. Everything is called on the session's thread,
/// often in the middle of a module's operation: an observer must neither step the session nor throw.
class SessionObserver {
public:
    virtual ~SessionObserver() = default;

    /// A step's dialog is open, filled in, and should show its tab page (0: the first). It lives until the
    /// session ends or starts again, even after it was closed.
    virtual void dialogOpened(ozm::CAnalysisModelessDialog& /*dialog*/, int /*page*/) {}
    /// None of the dialog's operations runs any more.
    virtual void dialogClosed(ozm::CAnalysisModelessDialog& /*dialog*/) {}
    virtual void analysisEnded() {}
    /// Whether the menus that start an analysis may be used.
    virtual void startupMenusEnabled(bool /*enabled*/) {}

    virtual void message(const ResultMessage& /*message*/) {}
    /// An output was added to the book; the reference is valid as long as the book.
    virtual void outputAdded(const ResultsBook::Output& /*output*/) {}
    /// The output added last was changed (a column renamed).
    virtual void outputChanged(const ResultsBook::Output& /*output*/) {}

    virtual void computationStarted(unsigned /*units*/) {}
    virtual void computationEnded() {}
    virtual void status(std::string_view /*text*/) {}
    virtual void progressCaption(std::string_view /*text*/) {}
    virtual void progress(unsigned /*done*/, unsigned /*units*/) {}
    virtual void iterationLine(std::string_view /*line*/) {}
    /// Called from within a long computation after `StopSignals::askForEvents`: a window processes its events
    /// here.
    virtual void processEvents() {}
};

/// Passes everything on to several observers. One may remove itself meanwhile.
class ObserverList final : public SessionObserver {
public:
    void add(SessionObserver& observer) { observers_.push_back(&observer); }
    void remove(SessionObserver& observer) { std::erase(observers_, &observer); }

    void dialogOpened(ozm::CAnalysisModelessDialog& dialog, int page) override {
        each([&](SessionObserver& o) { o.dialogOpened(dialog, page); });
    }
    void dialogClosed(ozm::CAnalysisModelessDialog& dialog) override {
        each([&](SessionObserver& o) { o.dialogClosed(dialog); });
    }
    void analysisEnded() override {
        each([](SessionObserver& o) { o.analysisEnded(); });
    }
    void startupMenusEnabled(bool enabled) override {
        each([&](SessionObserver& o) { o.startupMenusEnabled(enabled); });
    }
    void message(const ResultMessage& message) override {
        each([&](SessionObserver& o) { o.message(message); });
    }
    void outputAdded(const ResultsBook::Output& output) override {
        each([&](SessionObserver& o) { o.outputAdded(output); });
    }
    void outputChanged(const ResultsBook::Output& output) override {
        each([&](SessionObserver& o) { o.outputChanged(output); });
    }
    void computationStarted(unsigned units) override {
        each([&](SessionObserver& o) { o.computationStarted(units); });
    }
    void computationEnded() override {
        each([](SessionObserver& o) { o.computationEnded(); });
    }
    void status(std::string_view text) override {
        each([&](SessionObserver& o) { o.status(text); });
    }
    void progressCaption(std::string_view text) override {
        each([&](SessionObserver& o) { o.progressCaption(text); });
    }
    void progress(unsigned done, unsigned units) override {
        each([&](SessionObserver& o) { o.progress(done, units); });
    }
    void iterationLine(std::string_view line) override {
        each([&](SessionObserver& o) { o.iterationLine(line); });
    }
    void processEvents() override {
        each([](SessionObserver& o) { o.processEvents(); });
    }

private:
    template <class Call>
    void each(Call call) {
        // By position: the list may shrink meanwhile. NOLINTNEXTLINE(modernize-loop-convert)
        for (std::size_t i = 0; i < observers_.size(); ++i)
            call(*observers_[i]);
    }
    std::vector<SessionObserver*> observers_;
};

} // namespace korvana
