#include "host/data/TextCodes.h"

#include "host/data/NumberText.h"
#include "host/data/Workers.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <optional>

namespace korvana {
namespace {

bool isWord(std::string_view text, std::string_view lowerCase) {
    return std::ranges::equal(text, lowerCase, [](char c, char lower) {
        return (c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c) == lower;
    });
}

std::optional<bool> truthOf(std::string_view text) {
    if (isWord(text, "true")) return true;
    if (isWord(text, "false")) return false;
    return std::nullopt;
}

TextCodes codesOfTruths(std::span<const SeenText> seen) {
    TextCodes all{true, {}, {}};
    for (const bool value : {false, true}) {
        const SeenText* first = nullptr;
        for (const SeenText& each : seen)
            if (truthOf(each.text) == value && (first == nullptr || each.row < first->row)) first = &each;
        if (first != nullptr) all.labels.push_back({value ? 1.0 : 0.0, std::string(first->text)});
    }
    for (const SeenText& each : seen)
        all.codes.push_back(truthOf(each.text) == true ? 1.0 : 0.0);
    return all;
}

/// A text to be sorted. Most pairs are told apart by one number, without a look at the texts.
struct Key {
    std::uint64_t order;
    std::uint32_t at; ///< place among the texts seen
};

/// Orders finite numbers as their values.
std::uint64_t orderOf(double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value + 0.0); // one zero
    constexpr std::uint64_t sign = std::uint64_t{1} << 63U;
    return (bits & sign) != 0 ? ~bits : bits | sign;
}

/// Orders texts as their first eight bytes.
std::uint64_t orderOf(std::string_view text) {
    std::uint64_t order = 0;
    for (std::size_t i = 0; i < 8; ++i)
        order = order << 8U | (i < text.size() ? static_cast<unsigned char>(text[i]) : 0U);
    return order;
}

std::size_t commonLength(std::string_view a, std::string_view b) {
    return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

/// The numbers and the texts, sorted apart.
class Order {
public:
    Order(std::span<const SeenText> seen, unsigned threads) : seen_(seen), threads_(threads) {
        std::optional<std::string_view> common; // how all texts begin
        for (std::size_t i = 0; i < seen.size(); ++i) {
            const auto at = static_cast<std::uint32_t>(i);
            const NumberText number = readNumber(seen[i].text);
            if (number.form == NumberForm::Finite) {
                numbers.push_back({orderOf(number.value), at});
            } else {
                texts.push_back({0, at});
                common = common.value_or(seen[i].text);
                common->remove_suffix(common->size() - commonLength(*common, seen[i].text));
            }
        }
        for (Key& key : texts)
            key.order = orderOf(seen[key.at].text.substr(common->size()));
        sort(numbers);
        sort(texts);
    }

    std::vector<Key> numbers;
    std::vector<Key> texts;

private:
    void sort(std::vector<Key>& keys) const {
        const auto less = [this](const Key& a, const Key& b) {
            return a.order != b.order ? a.order < b.order : seen_[a.at].text < seen_[b.at].text;
        };
        const auto at = [&](std::size_t part) {
            return keys.begin() + static_cast<std::ptrdiff_t>(keys.size() * part / threads_);
        };
        forEachInOrder(threads_, threads_, [&](std::size_t i) { std::sort(at(i), at(i + 1), less); });
        for (std::size_t sorted = 1; sorted < threads_; ++sorted)
            std::inplace_merge(keys.begin(), at(sorted), at(sorted + 1), less);
    }

    std::span<const SeenText> seen_;
    unsigned threads_;
};

} // namespace

TextCodes codesOf(std::span<const SeenText> seen, unsigned threads) {
    if (!seen.empty() &&
        std::ranges::all_of(seen, [](const SeenText& each) { return truthOf(each.text).has_value(); }))
        return codesOfTruths(seen);
    constexpr std::size_t many = 1 << 15; // below this, a thread is not worth starting
    threads = seen.size() < many ? 1 : std::max(threads, 1U);
    const Order order(seen, threads);
    TextCodes all;
    all.codes.resize(seen.size());
    std::vector<std::string_view> distinct;
    for (const auto& keys : {&order.numbers, &order.texts}) {
        for (const Key& key : *keys) {
            const std::string_view text = seen[key.at].text;
            if (distinct.empty() || distinct.back() != text) distinct.push_back(text);
            all.codes[key.at] = static_cast<double>(distinct.size());
        }
    }
    all.labels.resize(distinct.size());
    forEachInOrder(threads, threads, [&](std::size_t part) {
        const std::size_t end = distinct.size() * (part + 1) / threads;
        for (std::size_t i = distinct.size() * part / threads; i < end; ++i)
            all.labels[i] = {static_cast<double>(i + 1), std::string(distinct[i])};
    });
    return all;
}

} // namespace korvana
