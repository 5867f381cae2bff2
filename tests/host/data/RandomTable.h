#pragma once

#include "host/data/NumberText.h"

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace korvana::test {

/** A random table with its cells as they should be read, and as text. */
struct RandomTable {
    std::string text;
    std::string expected; ///< as by dump

    RandomTable(unsigned seed, int rows) {
        std::mt19937 random(seed);
        const auto chance = [&](unsigned n) { return random() % n == 0; };
        std::vector<std::string> columns{"x N:", "g T:", "k N:"};
        text = chance(2) ? "x,g,k\n" : "\"x\",\"g\",\"k\"\r\n";
        for (int i = 0; i < rows; ++i) {
            std::string x = std::to_string(static_cast<int>(random() % 2000) - 1000);
            if (chance(2)) x += "." + std::to_string(random() % 100000) + "1";
            if (chance(9)) x = "";
            std::string g;
            for (auto n = random() % 6; n > 0; --n)
                g += "ab,;\n\"x"[random() % 7];
            g = "g" + g + "h";
            const std::string k = std::to_string(random() % 2);
            std::string quoted;
            for (const char c : g)
                quoted.append(c == '"' ? 2 : 1, c);
            text.append(x).append(",").append(chance(4) ? " " : "").append("\"").append(quoted).append("\",");
            text.append(chance(5) ? "\"" + k + "\"" : k).append(chance(3) ? "\r\n" : "\n");
            if (chance(20)) text += "\n";
            columns[0].append(" ").append(x.empty() ? "-" : numberText(std::strtod(x.c_str(), nullptr)));
            columns[1].append(" ").append(g);
            columns[2].append(" ").append(k);
        }
        expected = columns[0] + " | " + columns[1] + " | " + columns[2];
    }
};

} // namespace korvana::test
