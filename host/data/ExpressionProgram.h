#pragma once

#include "host/data/ExpressionOperations.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace korvana {

/// A formula in the order in which it is computed: operands are put on a stack, and an operation replaces the
/// last ones by its result.
struct ExpressionProgram {
    struct Step {
        enum class Kind : std::uint8_t { Input, Constant, Operation } kind;
        std::size_t place; ///< of the input or the constant; of an operation, the slot for its results
        const ExpressionOperation* operation = nullptr;
    };
    std::vector<Step> steps;
    std::vector<double> constants;
    std::size_t slots = 0; ///< results that are kept at a time; never that of an operation and its arguments
    std::size_t depth = 0; ///< of the stack
};

/// How tightly operators bind, loosest first.
enum class Binding : std::uint8_t { Or, And, Not, Comparison, Sum, Product, Sign, Power };

/// Puts the parts of a formula, told as they are written, into the order of an ExpressionProgram. The formula
/// must be well-formed.
class ExpressionBuilder {
public:
    void input(std::size_t place) { push({ExpressionProgram::Step::Kind::Input, place}, noSlot); }
    void constant(double value);
    void prefix(const ExpressionOperation& operation, Binding binding);
    void infix(const ExpressionOperation& operation, Binding binding);
    void open() { begins_.push_back(pending_.size()); }
    void comma() { flush(begins_.back()); }
    /// @param function   whose arguments were in the parentheses; none for mere parentheses
    void close(const ExpressionOperation* function, int arguments);
    ExpressionProgram take();

private:
    static constexpr std::size_t noSlot = static_cast<std::size_t>(-1);
    struct Pending {
        const ExpressionOperation* operation;
        Binding binding;
    };

    void push(ExpressionProgram::Step step, std::size_t slot);
    void apply(const ExpressionOperation& operation);
    void flush(std::size_t begin);

    ExpressionProgram program_;
    std::vector<Pending> pending_; ///< operators whose right operand is not complete
    std::vector<std::size_t> begins_;
    std::vector<std::size_t> stack_; ///< slots of what is on the stack
    std::vector<std::size_t> free_;
};

} // namespace korvana
