#pragma once

#include "support/CAnalysisSupport.h"

#include <cstddef>
#include <limits>
#include <span>
#include <type_traits>
#include <utility>

namespace ozm::survival {

/// An array obtained from the host's memory service and released when it goes; the only place where
/// `AllocMem` and `FreeMem` are called. Elements are not initialised. The host must outlive it.
template <class T>
class HostArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    HostArray() = default;
    ~HostArray() { Release(); }
    HostArray(const HostArray&) = delete;
    HostArray& operator=(const HostArray&) = delete;
    HostArray(HostArray&& other) noexcept
        : host_(other.host_), data_(std::exchange(other.data_, nullptr)),
          size_(std::exchange(other.size_, 0)) {}
    HostArray& operator=(HostArray&& other) noexcept {
        if (this != &other) {
            Release();
            host_ = other.host_;
            data_ = std::exchange(other.data_, nullptr);
            size_ = std::exchange(other.size_, 0);
        }
        return *this;
    }

    /// Replaces what the array held. False when the host refused the request; the array is then empty.
    [[nodiscard]] bool Allocate(CAnalysisSupport& host, std::size_t count) {
        Release();
        if (count > std::numeric_limits<std::size_t>::max() / sizeof(T)) return false;
        void* memory = nullptr;
        if (!host.AllocMem(memory, count * sizeof(T)) || memory == nullptr) return false;
        host_ = &host;
        data_ = static_cast<T*>(memory);
        size_ = count;
        return true;
    }

    void Release() noexcept {
        if (data_ != nullptr) host_->FreeMem(data_);
        data_ = nullptr;
        size_ = 0;
    }

    [[nodiscard]] std::span<T> Span() { return {data_, size_}; }
    [[nodiscard]] std::span<const T> Span() const { return {data_, size_}; }
    [[nodiscard]] std::span<T> First(std::size_t count) { return Span().first(count); }
    [[nodiscard]] std::span<const T> First(std::size_t count) const { return Span().first(count); }
    [[nodiscard]] std::size_t Size() const { return size_; }
    T& operator[](std::size_t i) { return data_[i]; }
    const T& operator[](std::size_t i) const { return data_[i]; }

private:
    CAnalysisSupport* host_ = nullptr;
    T* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace ozm::survival
