#pragma once

#include "module/survdata/HostArray.h"

#include <array>
#include <cstddef>
#include <span>

namespace ozm::survival {

/// An array of a run or of its results: fixed storage for up to `Fixed` entries, else memory from the host.
/// Elements are not initialised. The host must outlive it.
template <class T, std::size_t Fixed>
class WorkArray {
public:
    WorkArray() = default;
    WorkArray(const WorkArray&) = delete; // its span may point into the object itself
    WorkArray& operator=(const WorkArray&) = delete;

    /// Replaces what the array held. False when the host refused the request; the array is then empty.
    [[nodiscard]] bool Obtain(CAnalysisSupport& host, std::size_t count) {
        Release();
        if (count <= Fixed) {
            span_ = std::span{fixed_}.first(count);
            return true;
        }
        if (!host_.Allocate(host, count)) return false;
        span_ = host_.Span();
        return true;
    }

    void Release() noexcept {
        span_ = {};
        host_.Release();
    }

    [[nodiscard]] std::span<T> Span() { return span_; }
    [[nodiscard]] std::span<const T> Span() const { return span_; }
    [[nodiscard]] std::span<T> First(std::size_t count) { return span_.first(count); }
    [[nodiscard]] std::span<const T> First(std::size_t count) const { return span_.first(count); }
    [[nodiscard]] std::size_t Size() const { return span_.size(); }
    T& operator[](std::size_t i) { return span_[i]; }
    const T& operator[](std::size_t i) const { return span_[i]; }

private:
    std::span<T> span_;
    HostArray<T> host_;
    std::array<T, Fixed> fixed_{};
};

} // namespace ozm::survival
