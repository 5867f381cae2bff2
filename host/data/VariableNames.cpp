#include "host/data/VariableNames.h"

#include "host/data/TextEncoding.h"

#include <algorithm>
#include <unordered_set>

namespace korvana {

std::vector<std::string> variableNames(const std::vector<std::string>& header, std::size_t columns,
                                       std::size_t first, std::vector<std::string>& notes) {
    std::vector<std::string> names(columns);
    std::unordered_set<std::string> taken;
    for (std::size_t i = 0; i < header.size() && i < columns; ++i) {
        names[i] = toUtf8(header[i]);
        std::replace_if(
            names[i].begin(), names[i].end(), [](char c) { return static_cast<unsigned char>(c) < 0x20; },
            ' ');
    }
    for (const std::string& name : names)
        taken.insert(name);
    std::unordered_set<std::string> used;
    for (std::size_t i = first; i < columns; ++i) {
        const std::string number = std::to_string(i - first + 1);
        std::string name = names[i];
        if (name.empty()) name.append("Var").append(number);
        const bool repeated = !used.insert(name).second || (names[i].empty() && taken.contains(name));
        if (repeated) {
            const std::string base = name;
            for (std::size_t suffix = 2; taken.contains(name) || used.contains(name); ++suffix)
                name = std::string(base).append("_").append(std::to_string(suffix));
            used.insert(name);
            if (!names[i].empty()) {
                notes.emplace_back("the name '")
                    .append(base)
                    .append("' occurs twice in the header; variable ")
                    .append(number)
                    .append(" is called '")
                    .append(name)
                    .append("'");
            }
        }
        if (names[i].empty() && !header.empty()) {
            notes.emplace_back("variable ")
                .append(number)
                .append(" has no name in the header; it is called '")
                .append(name)
                .append("'");
        }
        names[i] = name;
    }
    return names;
}

} // namespace korvana
