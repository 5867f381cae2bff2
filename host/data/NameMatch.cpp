#include "host/data/NameMatch.h"

#include <algorithm>
#include <utility>

namespace korvana {
namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Optimal string alignment distances (Levenshtein with swaps of neighbours) between a text and each
/// beginning of another, the empty one first; kept in three rows.
std::vector<std::size_t> editDistances(std::string_view a, std::string_view b) {
    std::vector<std::size_t> before(b.size() + 1);
    std::vector<std::size_t> last(b.size() + 1);
    std::vector<std::size_t> now(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        last[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        now[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const char x = lower(a[i - 1]);
            const char y = lower(b[j - 1]);
            now[j] = std::min({last[j] + 1, now[j - 1] + 1, last[j - 1] + (x == y ? 0U : 1U)});
            if (i > 1 && j > 1 && x == lower(b[j - 2]) && lower(a[i - 2]) == y)
                now[j] = std::min(now[j], before[j - 2] + 1);
        }
        std::swap(before, last);
        std::swap(last, now);
    }
    return last;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    return editDistances(a, b).back();
}

/// One error per three letters, and one in a word of two.
bool isMisspelt(std::string_view name, std::string_view candidate, std::size_t distance) {
    const std::size_t length = std::max(name.size(), candidate.size());
    return distance <= std::max<std::size_t>(length / 3, 1) && distance < candidate.size();
}

/// Whether one is the beginning of the other, and long enough to be more than chance.
bool isAbbreviation(std::string_view name, std::string_view candidate) {
    constexpr std::size_t fewest = 3;
    const std::size_t length = std::min(name.size(), candidate.size());
    return length >= fewest && equalIgnoringCase(name.substr(0, length), candidate.substr(0, length));
}

/// Whether the name is the beginning of a candidate with one error, and long enough to tell.
bool isMisspeltAbbreviation(std::string_view name, std::string_view candidate) {
    constexpr std::size_t fewest = 5;
    if (name.size() < fewest || candidate.size() <= name.size()) return false;
    const std::vector<std::size_t> distances = editDistances(name, candidate);
    return *std::min_element(distances.begin(), distances.end()) <= 1;
}

} // namespace

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

std::vector<std::string> nearestOf(std::string_view name, const std::vector<std::string_view>& candidates,
                                   std::size_t most) {
    constexpr std::size_t longest = 100; // longer names are rarely misspelt by a letter
    std::vector<std::pair<std::size_t, std::string_view>> near;
    if (name.empty() || name.size() > longest) return {};
    for (const std::string_view candidate : candidates) {
        if (candidate.empty() || candidate.size() > longest) continue;
        const std::size_t distance = editDistance(name, candidate);
        if (isMisspelt(name, candidate, distance)) near.emplace_back(distance, candidate);
    }
    // An abbreviation is less likely than a typing error.
    for (const std::string_view candidate : candidates)
        if (isAbbreviation(name, candidate) && std::none_of(near.begin(), near.end(), [&](const auto& each) {
                return each.second == candidate;
            }))
            near.emplace_back(longest, candidate);
    if (near.empty())
        for (const std::string_view candidate : candidates)
            if (candidate.size() <= longest && isMisspeltAbbreviation(name, candidate))
                near.emplace_back(longest, candidate);
    std::stable_sort(near.begin(), near.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> names;
    for (std::size_t i = 0; i < near.size() && i < most; ++i)
        names.emplace_back(near[i].second);
    return names;
}

std::vector<std::string> completionsOf(std::string_view name,
                                       const std::vector<std::string_view>& candidates) {
    std::vector<std::string> found;
    for (const std::string_view candidate : candidates)
        if (name.size() >= 2 && candidate.size() > name.size() &&
            equalIgnoringCase(candidate.substr(0, name.size()), name))
            found.emplace_back(candidate);
    return found.empty() ? nearestOf(name, candidates, 1) : found;
}

std::string didYouMean(const std::vector<std::string>& names) {
    if (names.empty()) return {};
    std::string text = " (did you mean ";
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i > 0 ? ", '" : "'") + names[i] + "'";
    return text + "?)";
}

} // namespace korvana
