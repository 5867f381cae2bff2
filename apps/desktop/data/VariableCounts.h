#pragma once

#include "host/data/Describe.h"
#include "host/session/ActiveData.h"

#include <QObject>
#include <QTimer>
#include <optional>
#include <vector>

namespace korvana::desktop {

/// Counts the values of all variables over the selected cases, in pieces of a few milliseconds whenever the
/// program has nothing else to do.
class VariableCounts : public QObject {
    Q_OBJECT

public:
    static constexpr int distinctLimit = 1000;

    explicit VariableCounts(QObject* parent = nullptr);

    /// Discards all counts and starts again; nullptr: nothing to count. The data must exist until the next
    /// call.
    void start(const ActiveData* data);
    /// Discards the counts of one variable (from 0).
    void again(int variable0);
    /// Starts or pauses counting (paused at first).
    void setRunning(bool running);

    /// No value while the variable is not counted yet.
    [[nodiscard]] const VariableSummary* of(int variable0) const;

signals:
    void counted(int variable0);

private:
    void countSome();

    const ActiveData* data_ = nullptr;
    int generation_ = 0;
    std::vector<std::optional<VariableSummary>> summaries_;
    std::size_t next_ = 0;
    std::optional<VariableDescriber> describer_;
    QTimer idle_;
    bool running_ = false;
};

} // namespace korvana::desktop
