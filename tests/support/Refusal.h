#pragma once

#include <string>

namespace korvana::test {

/// What the error says that `act` throws, empty when it throws none.
template <class Error, class Act>
std::string refusalOf(Act act) {
    try {
        act();
    } catch (const Error& error) {
        return error.what();
    }
    return {};
}

} // namespace korvana::test
