#include "host/data/TextCodes.h"

#include "host/data/NumberText.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

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

std::vector<ValueLabel> labelsOfTruths(const std::vector<SeenText>& seen) {
    std::vector<ValueLabel> labels;
    for (const bool value : {false, true}) {
        const SeenText* first = nullptr;
        for (const SeenText& each : seen)
            if (truthOf(each.text) == value && (first == nullptr || each.row < first->row)) first = &each;
        if (first != nullptr) labels.push_back({value ? 1.0 : 0.0, first->text});
    }
    return labels;
}

std::vector<ValueLabel> labelsInOrder(std::vector<SeenText> seen) {
    struct Ranked {
        bool isNumber;
        double number;
        std::string text;
    };
    std::vector<Ranked> ranked;
    ranked.reserve(seen.size());
    for (SeenText& each : seen) {
        const NumberText number = readNumber(each.text);
        const bool isNumber = number.form == NumberForm::Finite;
        ranked.push_back({isNumber, isNumber ? number.value : 0.0, std::move(each.text)});
    }
    std::sort(ranked.begin(), ranked.end(), [](const Ranked& a, const Ranked& b) {
        if (a.isNumber != b.isNumber) return a.isNumber;
        if (a.number != b.number) return a.number < b.number;
        return a.text < b.text;
    });
    std::vector<ValueLabel> labels;
    labels.reserve(ranked.size());
    for (Ranked& each : ranked)
        if (labels.empty() || labels.back().text != each.text)
            labels.push_back({static_cast<double>(labels.size() + 1), std::move(each.text)});
    return labels;
}

} // namespace

TextCodes::TextCodes(std::vector<SeenText> seen)
    : truths_(!seen.empty() &&
              std::ranges::all_of(seen, [](const SeenText& each) { return truthOf(each.text).has_value(); })),
      labels_(truths_ ? labelsOfTruths(seen) : labelsInOrder(std::move(seen))) {
    if (truths_) return;
    for (const ValueLabel& label : labels_)
        codes_.emplace(label.text, label.value);
}

double TextCodes::of(std::string_view text) const {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    if (truths_) {
        const std::optional<bool> truth = truthOf(text);
        return truth ? static_cast<double>(*truth) : none;
    }
    const auto found = codes_.find(text);
    return found == codes_.end() ? none : found->second;
}

} // namespace korvana
