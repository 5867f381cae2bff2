#include "host/data/DayNumber.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace korvana {
namespace {

constexpr int julianDayOfEpoch = 2440588; // 1970-01-01

int number(std::string_view digits) {
    int value = 0;
    for (const char c : digits)
        value = 10 * value + (c - '0');
    return value;
}

} // namespace

std::optional<int> dayNumberOf(int year, int month, int day) {
    if (year < 0 || year > 9999 || month < 1 || month > 12 || day < 1) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year{year},
                                           std::chrono::month{static_cast<unsigned>(month)},
                                           std::chrono::day{static_cast<unsigned>(day)}};
    if (!date.ok()) return std::nullopt;
    return static_cast<int>(std::chrono::sys_days{date}.time_since_epoch().count()) + julianDayOfEpoch;
}

IsoDate readIsoDate(std::string_view text) {
    constexpr std::string_view form = "dddd-dd-dd";
    if (text.size() != form.size()) return {};
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool fits = form[i] == '-' ? text[i] == '-' : text[i] >= '0' && text[i] <= '9';
        if (!fits) return {};
    }
    IsoDate date;
    date.hasForm = true;
    date.dayNumber =
        dayNumberOf(number(text.substr(0, 4)), number(text.substr(5, 2)), number(text.substr(8, 2)));
    return date;
}

std::string isoDateText(double dayNumber) {
    if (!(std::fabs(dayNumber) < 1e8) || dayNumber != std::floor(dayNumber)) return {};
    const int sinceEpoch = static_cast<int>(dayNumber) - julianDayOfEpoch;
    const std::chrono::year_month_day day{std::chrono::sys_days{std::chrono::days{sinceEpoch}}};
    const int year = static_cast<int>(day.year());
    if (year < 0 || year > 9999) return {};
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", year, static_cast<unsigned>(day.month()),
                  static_cast<unsigned>(day.day()));
    return text.data();
}

} // namespace korvana
