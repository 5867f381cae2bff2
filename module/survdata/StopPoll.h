#pragma once

namespace ozm::survival {

/// A stop test for numerical routines, which know nothing of the host behind it. Without one they run to
/// their end.
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
