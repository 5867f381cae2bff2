#include "host/data/ExpressionProgram.h"

#include <algorithm>
#include <utility>

namespace korvana {

void ExpressionBuilder::constant(double value) {
    push({ExpressionProgram::Step::Kind::Constant, program_.constants.size()}, noSlot);
    program_.constants.push_back(value);
}

void ExpressionBuilder::prefix(const ExpressionOperation& operation, Binding binding) {
    pending_.push_back(
        {&operation, binding}); // its operand comes first, however tightly the one before binds
}

void ExpressionBuilder::infix(const ExpressionOperation& operation, Binding binding) {
    const std::size_t begin = begins_.empty() ? 0 : begins_.back();
    // Powers are taken from the right, all others from the left.
    while (pending_.size() > begin && (pending_.back().binding > binding ||
                                       (pending_.back().binding == binding && binding != Binding::Power))) {
        apply(*pending_.back().operation);
        pending_.pop_back();
    }
    pending_.push_back({&operation, binding});
}

void ExpressionBuilder::close(const ExpressionOperation* function, int arguments) {
    flush(begins_.back());
    begins_.pop_back();
    if (function == nullptr) return;
    // One that takes two joins any number of arguments; one argument stays as it is.
    const bool joins = function->arguments == 2;
    for (int times = joins ? arguments - 1 : 1; times > 0; --times)
        apply(*function);
}

ExpressionProgram ExpressionBuilder::take() {
    flush(0);
    return std::move(program_);
}

void ExpressionBuilder::push(ExpressionProgram::Step step, std::size_t slot) {
    program_.steps.push_back(step);
    stack_.push_back(slot);
    program_.depth = std::max(program_.depth, stack_.size());
}

void ExpressionBuilder::apply(const ExpressionOperation& operation) {
    if (free_.empty()) free_.push_back(program_.slots++);
    const std::size_t slot = free_.back();
    free_.pop_back();
    for (int k = 0; k < operation.arguments; ++k) {
        if (stack_.back() != noSlot) free_.push_back(stack_.back());
        stack_.pop_back();
    }
    push({ExpressionProgram::Step::Kind::Operation, slot, &operation}, slot);
}

void ExpressionBuilder::flush(std::size_t begin) {
    for (; pending_.size() > begin; pending_.pop_back())
        apply(*pending_.back().operation);
}

} // namespace korvana
