#include "apps/cli/Console.h"

#include "host/data/TextEncoding.h"

#include <algorithm>

namespace korvana::cli {

std::string withShortQuotes(std::string_view line) {
    constexpr std::size_t longest = 300;
    constexpr std::size_t shortened = 80;
    std::string text;
    while (line.size() > longest) {
        const std::size_t open = line.find_first_of("'\"");
        const std::size_t close =
            open < line.size() ? line.find(line[open], open + 1) : std::string_view::npos;
        if (close == std::string_view::npos) break;
        const std::string_view inside = line.substr(open + 1, close - open - 1);
        text.append(line.substr(0, open + 1));
        text.append(inside.size() > longest ? brief(inside, shortened) : std::string(inside));
        text += line[open];
        line.remove_prefix(close + 1);
    }
    return text.append(line);
}

void Console::say(std::string_view text) {
    if (heard != nullptr) {
        heard->emplace_back(text);
        return;
    }
    err << "korvana: ";
    sayMore(text);
}

void Console::sayMore(std::string_view text) {
    if (heard != nullptr) {
        heard->emplace_back(text);
        return;
    }
    do {
        const std::size_t end = std::min(text.find('\n'), text.size());
        err << withShortQuotes(withEscapes(text.substr(0, end))) << '\n';
        text.remove_prefix(std::min(end + 1, text.size()));
    } while (!text.empty());
}

} // namespace korvana::cli
