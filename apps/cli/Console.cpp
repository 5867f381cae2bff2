#include "apps/cli/Console.h"

#include "host/results/Utf8.h"

#include <algorithm>

namespace korvana::cli {

void Console::say(std::string_view text) {
    err << "korvana: ";
    do {
        const std::size_t end = std::min(text.find('\n'), text.size());
        err << oneLine(text.substr(0, end)) << '\n';
        text.remove_prefix(std::min(end + 1, text.size()));
    } while (!text.empty());
}

} // namespace korvana::cli
