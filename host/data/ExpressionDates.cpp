#include "host/data/ExpressionDates.h"

#include "host/data/DateText.h"
#include "host/data/DayNumber.h"
#include "host/data/Expression.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace korvana {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The length of three numbers with the same sign between them; 0 = there are none.
std::size_t lengthOfThree(std::string_view text) {
    std::size_t at = 0;
    const auto skipDigits = [&] {
        const std::size_t begin = at;
        while (at < text.size() && isDigit(text[at]))
            ++at;
        return at > begin;
    };
    if (!skipDigits() || at == text.size()) return 0;
    const char sign = text[at];
    ++at;
    if (!skipDigits() || at == text.size() || text[at] != sign) return 0;
    ++at;
    return skipDigits() ? at : 0;
}

/// Whether the parts other than the year can be a day and a month.
bool hasParts(const DateText& date) {
    const auto fits = [](int part) { return part >= 1 && part <= 31; };
    return (date.yearFirst ? fits(date.third) : fits(date.first)) && fits(date.second);
}

bool isFactorSign(char c) {
    return c == '*' || c == '/' || c == '^';
}

bool isFactorSign(const Token& token) {
    return token.kind == TokenKind::Operator && isFactorSign(token.text.front());
}

bool isName(const Token& token) {
    return token.kind == TokenKind::Name || token.kind == TokenKind::QuotedName;
}

class DateCheck {
public:
    DateCheck(std::string_view expression, std::span<const Token> tokens,
              const std::function<bool(const Token&)>& holdsDates)
        : expression_(expression), tokens_(tokens), holdsDates_(holdsDates) {}

    void run() const {
        bool anyDate = false;
        for (std::size_t i = 0; i < tokens_.size(); ++i)
            anyDate = anyDate || isDate(i);
        if (!anyDate) return;
        for (std::size_t i = 0; i < tokens_.size(); ++i) {
            if (tokens_[i].kind == TokenKind::Date && isFactor(i))
                fail(i, "a date cannot be a factor; put blanks around the signs to subtract, or the "
                        "difference of two "
                        "dates in parentheses");
            if (isDateInPieces(i))
                fail(i, std::string(dateIsWritten) +
                            ", without blanks; if this is to be calculated, put a part of it in parentheses");
            if (tokens_[i].kind == TokenKind::Compare) checkComparison(i);
        }
    }

private:
    [[noreturn]] void fail(std::size_t place, std::string_view what) const {
        throw ExpressionError(expression_, tokens_[place].position, what);
    }

    bool isDate(std::size_t i) const {
        const Token& token = tokens_[i];
        if (!isName(token)) return token.kind == TokenKind::Date;
        const bool function = token.kind == TokenKind::Name && tokens_[i + 1].kind == TokenKind::Open;
        return !function && holdsDates_(token);
    }

    bool isFactor(std::size_t i) const {
        return (i > 0 && isFactorSign(tokens_[i - 1])) || isFactorSign(tokens_[i + 1]);
    }

    /// 1995 - 1 - 15, 1995 / 1 / 15, 15/1/95.
    bool isDateInPieces(std::size_t i) const {
        constexpr std::size_t pieces = 5;
        if (i + pieces >= tokens_.size()) return false;
        const std::string& sign = tokens_[i + 1].text;
        if (sign != "-" && sign != "/") return false;
        std::string joined;
        for (std::size_t k = i; k < i + pieces; ++k) {
            const Token& token = tokens_[k];
            constexpr double mostOfYear = 9999;
            if ((k - i) % 2 != 0) {
                if (token.kind != TokenKind::Operator || token.text != sign) return false;
                joined += sign;
            } else {
                if (token.kind != TokenKind::Number || !(token.value <= mostOfYear) ||
                    token.value != std::floor(token.value))
                    return false;
                joined += std::to_string(static_cast<int>(token.value));
            }
        }
        if ((i > 0 && isFactorSign(tokens_[i - 1])) || isFactorSign(tokens_[i + pieces])) return false;
        const auto date = readDateText(joined);
        return date && hasParts(*date) && (!date->shortYear || sign == "/");
    }

    struct Side {
        bool date = false;   ///< certainly a date, perhaps with days added
        bool number = false; ///< certainly a number that is no day number
    };

    /// The kind of result of the tokens [first, end).
    Side sideOf(std::size_t first, std::size_t end) const {
        int dates = 0; // added less subtracted
        int depth = 0;
        bool sure = true;
        bool number = true;
        for (std::size_t i = first; i < end; ++i) {
            const Token& token = tokens_[i];
            depth += token.kind == TokenKind::Open ? 1 : token.kind == TokenKind::Close ? -1 : 0;
            if (isDate(i)) {
                dates += isSubtracted(first, i) ? -1 : 1;
                sure = sure && depth == 0 && !isFactor(i);
                number = false;
            } else if (token.kind == TokenKind::Number) {
                number = number && isoDateText(std::floor(token.value)).empty();
            } else if (isName(token) || token.kind == TokenKind::Text) {
                sure = number = false;
            }
        }
        return {sure && dates == 1, number};
    }

    bool isSubtracted(std::size_t first, std::size_t i) const {
        bool subtracted = false;
        for (; i > first && tokens_[i - 1].kind == TokenKind::Operator; --i)
            subtracted = subtracted != (tokens_[i - 1].text == "-");
        return subtracted;
    }

    static bool endsSide(TokenKind kind) {
        return kind == TokenKind::And || kind == TokenKind::Or || kind == TokenKind::Not ||
               kind == TokenKind::Comma || kind == TokenKind::End;
    }

    void checkComparison(std::size_t compare) const {
        std::size_t first = compare;
        for (int depth = 0; first > 0 && !endsSide(tokens_[first - 1].kind); --first) {
            depth += tokens_[first - 1].kind == TokenKind::Close  ? 1
                     : tokens_[first - 1].kind == TokenKind::Open ? -1
                                                                  : 0;
            if (depth < 0) break;
        }
        std::size_t end = compare + 1;
        for (int depth = 0; !endsSide(tokens_[end].kind); ++end) {
            depth += tokens_[end].kind == TokenKind::Open    ? 1
                     : tokens_[end].kind == TokenKind::Close ? -1
                                                             : 0;
            if (depth < 0) break;
        }
        const Side left = sideOf(first, compare);
        const Side right = sideOf(compare + 1, end);
        if ((!left.date || !right.number) && (!left.number || !right.date)) return;
        fail(left.date ? compare + 1 : first,
             std::string("a date is compared with a number that is no date; ").append(dateIsWritten));
    }

    std::string_view expression_;
    std::span<const Token> tokens_;
    const std::function<bool(const Token&)>& holdsDates_;
};

} // namespace

std::optional<WrittenDate> writtenDateAt(std::string_view expression, std::size_t at) {
    const std::string_view rest = expression.substr(at);
    WrittenDate written;
    written.length = lengthOfThree(rest);
    const auto date = readDateText(rest.substr(0, written.length));
    if (!date) return std::nullopt;
    const char sign = rest[rest.find_first_not_of("0123456789")];
    if (date->yearFirst && sign == '-') {
        written.dayNumber = dayNumberOf(*date, DateOrder::YearMonthDay);
        return written;
    }
    if ((date->shortYear && sign != '.') || !hasParts(*date)) return std::nullopt;
    // A fourth number, or a factor: arithmetic.
    const std::string_view behind = rest.substr(written.length);
    if (behind.size() > 1 && behind[0] == sign && isDigit(behind[1])) return std::nullopt;
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t before = at > 0 ? expression.find_last_not_of(blanks, at - 1) : std::string_view::npos;
    const std::size_t after = behind.find_first_not_of(blanks);
    if ((before != std::string_view::npos && isFactorSign(expression[before])) ||
        (after != std::string_view::npos && isFactorSign(behind[after])))
        return std::nullopt;
    written.foreign = true;
    return written;
}

void checkDates(std::string_view expression, std::span<const Token> tokens,
                const std::function<bool(const Token&)>& holdsDates) {
    DateCheck(expression, tokens, holdsDates).run();
}

} // namespace korvana
