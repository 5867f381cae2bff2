#include "apps/desktop/data/VariableCounts.h"

#include <QElapsedTimer>
#include <algorithm>

namespace korvana::desktop {

VariableCounts::VariableCounts(QObject* parent) : QObject(parent) {
    connect(&idle_, &QTimer::timeout, this, &VariableCounts::countSome);
}

void VariableCounts::start(const ActiveData* data) {
    data_ = data;
    generation_ = data != nullptr ? data->generation() : 0;
    summaries_.assign(data != nullptr ? static_cast<std::size_t>(data->dataSet().variableCount()) : 0, {});
    next_ = 0;
    describer_.reset();
    setRunning(running_);
}

void VariableCounts::again(int variable0) {
    const auto place = static_cast<std::size_t>(variable0);
    if (place >= summaries_.size()) return;
    summaries_[place].reset();
    next_ = std::min(next_, place);
    describer_.reset();
    setRunning(running_);
}

void VariableCounts::setRunning(bool running) {
    running_ = running;
    if (running && next_ < summaries_.size())
        idle_.start(0);
    else
        idle_.stop();
}

const VariableSummary* VariableCounts::of(int variable0) const {
    const auto place = static_cast<std::size_t>(variable0);
    return place < summaries_.size() && summaries_[place] ? &*summaries_[place] : nullptr;
}

void VariableCounts::countSome() {
    constexpr std::size_t piece = 20'000;
    constexpr qint64 milliseconds = 5;
    if (data_ == nullptr || data_->generation() != generation_) { // the counted columns no longer exist
        describer_.reset();
        idle_.stop();
        return;
    }
    QElapsedTimer clock;
    clock.start();
    while (next_ < summaries_.size() && clock.elapsed() < milliseconds) {
        if (summaries_[next_]) {
            ++next_;
            continue;
        }
        const int variable0 = static_cast<int>(next_);
        if (!describer_) describer_.emplace(data_->dataSet(), variable0, data_->mask(), distinctLimit);
        if (describer_->advance(piece)) continue;
        summaries_[next_++] = describer_->take();
        describer_.reset();
        emit counted(variable0);
    }
    if (next_ >= summaries_.size()) idle_.stop();
}

} // namespace korvana::desktop
