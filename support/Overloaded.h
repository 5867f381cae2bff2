#pragma once

namespace ozm {

/// One visitor of a variant out of several lambdas.
template <class... F>
struct Overloaded : F... {
    using F::operator()...;
};
template <class... F>
Overloaded(F...) -> Overloaded<F...>;

} // namespace ozm
