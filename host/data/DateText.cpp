#include "host/data/DateText.h"

#include "host/data/DayNumber.h"

#include <chrono>
#include <cstddef>
#include <string>

namespace korvana {
namespace {

/// The rest of a text that is read from the front.
class Front {
public:
    explicit Front(std::string_view text) : text_(text) {}

    bool ended() const { return text_.empty(); }
    char peek() const { return text_.empty() ? '\0' : text_.front(); }
    bool digit() const { return peek() >= '0' && peek() <= '9'; }
    bool skip(char c) {
        if (peek() != c) return false;
        text_.remove_prefix(1);
        return true;
    }
    void skipBlanks() {
        while (skip(' ')) {}
    }

    /// A number of at most `most` digits; `digits` gets how many it has, 0 = none.
    int number(std::size_t most, std::size_t& digits) {
        int value = 0;
        for (digits = 0; digits < most && digit(); ++digits) {
            value = 10 * value + (peek() - '0');
            text_.remove_prefix(1);
        }
        return value;
    }

    /// One of AM and PM in any letter case: 'A', 'P', or none.
    char half() {
        if (text_.size() < 2 || (text_[1] | 0x20) != 'm') return '\0';
        const char c = static_cast<char>(text_[0] & ~0x20);
        if (c != 'A' && c != 'P') return '\0';
        text_.remove_prefix(2);
        return c;
    }

private:
    std::string_view text_;
};

/// Z, +01, +01:00 or +0100 at the end: the date counts as it is written there.
bool readZone(Front& rest) {
    if (rest.skip('Z') || rest.skip('z') || rest.ended()) return rest.ended();
    if (!rest.skip('+') && !rest.skip('-')) return false;
    std::size_t digits = 0;
    rest.number(2, digits);
    if (digits != 2) return false;
    if (rest.ended()) return true;
    rest.skip(':');
    rest.number(2, digits);
    return digits == 2 && rest.ended();
}

/// 12:34, 12:34:56, 12:34:56.789, with AM or PM, with a zone; false when the text is something else.
bool readTime(Front& rest, DateText& date) {
    if (!rest.skip('T') && !rest.skip('t')) {
        if (!rest.skip(' ')) return false;
        rest.skipBlanks();
    }
    std::size_t digits = 0;
    int hour = rest.number(2, digits);
    if (digits == 0 || !rest.skip(':')) return false;
    const int minute = rest.number(2, digits);
    if (digits != 2) return false;
    int second = 0;
    bool fraction = false;
    if (rest.skip(':')) {
        second = rest.number(2, digits);
        if (digits != 2) return false;
        if (rest.skip('.') || rest.skip(',')) {
            if (!rest.digit()) return false;
            while (rest.digit())
                fraction = rest.number(1, digits) != 0 || fraction;
        }
    }
    rest.skipBlanks();
    const char half = rest.half();
    rest.skipBlanks();
    if (half != '\0') {
        date.noSuchTime = hour < 1 || hour > 12;
        hour = hour % 12 + (half == 'P' ? 12 : 0);
    }
    date.noSuchTime = date.noSuchTime || hour > 23 || minute > 59 || second > 60;
    date.timeOfDay = hour != 0 || minute != 0 || second != 0 || fraction;
    return readZone(rest);
}

} // namespace

std::optional<DateText> readDateText(std::string_view text) {
    DateText date;
    Front rest(text);
    std::size_t digits = 0;
    date.first = rest.number(4, digits);
    if (digits == 0 || digits == 3) return std::nullopt;
    date.yearFirst = digits == 4;
    const char separator = rest.peek();
    if ((separator != '.' && separator != '/' && separator != '-') || !rest.skip(separator))
        return std::nullopt;
    date.second = rest.number(2, digits);
    if (digits == 0 || !rest.skip(separator)) return std::nullopt;
    date.third = rest.number(date.yearFirst ? 2 : 4, digits);
    if (digits == 0 || digits == 3 || (digits == 1 && !date.yearFirst)) return std::nullopt;
    date.shortYear = !date.yearFirst && digits == 2;
    if (!rest.ended() && !readTime(rest, date)) return std::nullopt;
    return date;
}

std::optional<int> dayNumberOf(const DateText& date, DateOrder order) {
    int year = date.third;
    int month = date.second;
    int day = date.first;
    if (date.yearFirst || order == DateOrder::YearMonthDay) {
        if (!date.yearFirst && !date.shortYear) return std::nullopt;
        year = date.first;
        day = date.third;
    } else if (order == DateOrder::MonthDayYear) {
        month = date.first;
        day = date.second;
    }
    if (date.noSuchTime) return std::nullopt;
    return dayNumberOf(date.shortYear ? 1900 + year : year, month, day);
}

double packedDate(const DateText& date) {
    const int parts = (date.first * 100 + date.second) * 10000 + date.third;
    return -1.0 - 2.0 * parts - (date.shortYear ? 1.0 : 0.0);
}

DateText unpackedDate(double packed) {
    const int number = static_cast<int>(-packed - 1.0);
    DateText date;
    date.shortYear = number % 2 != 0;
    const int parts = number / 2;
    date.third = parts % 10000;
    date.second = parts / 10000 % 100;
    date.first = parts / 1000000;
    return date;
}

} // namespace korvana
