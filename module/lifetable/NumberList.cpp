#include "module/lifetable/NumberList.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace ozm::survival {

bool NumberList::Read(std::string_view word, double& number) {
    const char* const end = word.data() + word.size();
    const auto [stopped, error] = std::from_chars(word.data(), end, number);
    return error == std::errc{} && stopped == end && std::isfinite(number);
}

} // namespace ozm::survival
