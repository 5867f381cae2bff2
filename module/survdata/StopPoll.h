#pragma once

namespace ozm::survival {

/// A stop test as numerical routines know it: a question, and nothing about who answers. Without one they run
/// to their end.
class StopPoll {
public:
    using Question = bool (*)(void* context);
    StopPoll() = default;
    StopPoll(Question question, void* context) : question_(question), context_(context) {}
    bool operator()() const { return question_ != nullptr && question_(context_); }

private:
    Question question_ = nullptr;
    void* context_ = nullptr;
};

} // namespace ozm::survival
