#include "host/results/ResultsBook.h"

#include <map>
#include <utility>

namespace korvana {

std::vector<std::string> outputIds(const ResultsBook& book) {
    std::vector<std::string> ids;
    std::map<std::pair<std::size_t, std::string>, int> uses;
    for (const ResultsBook::Output& output : book.outputs) {
        const auto& origin = ResultsBook::originOf(output);
        std::string& id = ids.emplace_back(origin == nullptr ? std::string{} : origin->id);
        if (id.empty()) continue;
        if (origin->run != nullptr && !origin->run->name.empty()) id.insert(0, origin->run->name + "/");
        const int number = ++uses[{output.index(), id}];
        if (number > 1) id += "-" + std::to_string(number);
    }
    return ids;
}

} // namespace korvana
