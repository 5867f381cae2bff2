#include "apps/cli/Lists.h"

#include "apps/cli/UsageError.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"

#include <algorithm>

namespace korvana::cli {
namespace {

/// Where the double quote is that ends the one at the beginning; 0 without such a pair.
std::size_t closingQuote(std::string_view text) {
    if (!text.starts_with('"')) return 0;
    std::size_t close = text.find('"', 1);
    while (close != std::string_view::npos && text.substr(close + 1).starts_with('"'))
        close = text.find('"', close + 2);
    return close == std::string_view::npos ? 0 : close;
}

std::string withoutQuotes(std::string_view entry) {
    std::string text;
    for (std::size_t i = 1; i + 1 < entry.size(); ++i) {
        text += entry[i];
        if (entry[i] == '"') ++i; // doubled
    }
    return text;
}

} // namespace

std::vector<std::string> splitList(std::string_view option, std::string_view list) {
    std::vector<std::string> entries;
    for (bool more = true; more;) {
        // A comma within double quotes belongs to its entry.
        list.remove_prefix(std::min(list.find_first_not_of(' '), list.size()));
        const std::size_t close = closingQuote(list);
        const std::size_t comma = list.find(',', close);
        more = comma != std::string_view::npos;
        const std::string_view entry = trimmed(list.substr(0, comma));
        entries.push_back(close > 0 && entry.size() == close + 1 ? withoutQuotes(entry) : std::string{entry});
        if (entries.back().empty()) throw UsageError(std::string{option} + ": an entry of the list is empty");
        if (more) list.remove_prefix(comma + 1);
    }
    return entries;
}

std::vector<std::size_t> chooseFrom(std::string_view option, std::string_view list,
                                    const std::vector<std::string_view>& known) {
    std::vector<bool> chosen(known.size(), false);
    for (const std::string& name : splitList(option, list)) {
        if (name == "all") {
            chosen.assign(known.size(), true);
            continue;
        }
        const auto found = std::find(known.begin(), known.end(), name);
        if (found == known.end())
            throw UsageError(std::string{option} + ": there is no '" + name + "'" +
                             didYouMean(nearestOf(name, known, 1)) + "; known are " +
                             joined({known.begin(), known.end()}) + ", or all");
        chosen[static_cast<std::size_t>(found - known.begin())] = true;
    }
    std::vector<std::size_t> places;
    for (std::size_t place = 0; place < chosen.size(); ++place)
        if (chosen[place]) places.push_back(place);
    return places;
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? " and " : ", ";
        text += words[i];
    }
    return text;
}

} // namespace korvana::cli
