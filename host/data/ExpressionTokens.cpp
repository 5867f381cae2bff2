#include "host/data/ExpressionTokens.h"

#include "host/data/Expression.h"
#include "host/data/ExpressionDates.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

#include <array>
#include <utility>

namespace korvana {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool beginsName(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool continuesName(char c) {
    return beginsName(c) || isDigit(c) || c == '.';
}

struct Sign {
    std::string_view written;
    TokenKind kind;
    std::string_view meaning;
};

// Longer signs come before shorter ones that they begin with.
constexpr std::array<Sign, 22> signs{{
    {"&&", TokenKind::And, ""},       {"||", TokenKind::Or, ""},        {"<>", TokenKind::Compare, "!="},
    {"!=", TokenKind::Compare, "!="}, {"==", TokenKind::Compare, "="},  {"<=", TokenKind::Compare, "<="},
    {">=", TokenKind::Compare, ">="}, {"**", TokenKind::Operator, "^"}, {"=", TokenKind::Compare, "="},
    {"<", TokenKind::Compare, "<"},   {">", TokenKind::Compare, ">"},   {"!", TokenKind::Not, ""},
    {"+", TokenKind::Operator, "+"},  {"-", TokenKind::Operator, "-"},  {"*", TokenKind::Operator, "*"},
    {"/", TokenKind::Operator, "/"},  {"^", TokenKind::Operator, "^"},  {"(", TokenKind::Open, ""},
    {")", TokenKind::Close, ""},      {",", TokenKind::Comma, ""},      {"&", TokenKind::And, ""},
    {"|", TokenKind::Or, ""},
}};

class Tokenizer {
public:
    explicit Tokenizer(std::string_view expression) : text_(expression) {}

    std::vector<Token> run() {
        for (;;) {
            while (at_ < text_.size() &&
                   std::string_view(" \t\r\n").find(text_[at_]) != std::string_view::npos)
                ++at_;
            Token token;
            token.position = at_;
            if (at_ == text_.size()) {
                tokens_.push_back(token);
                return std::move(tokens_);
            }
            const char c = text_[at_];
            if (isDigit(c) || (c == '.' && at_ + 1 < text_.size() && isDigit(text_[at_ + 1]))) {
                readNumberOrDate(token);
            } else if (beginsName(c)) {
                readName(token);
            } else if (c == '"' || c == '\'' || c == '`') {
                readQuoted(token);
            } else {
                readSign(token);
            }
            tokens_.push_back(std::move(token));
        }
    }

private:
    void readNumberOrDate(Token& token) {
        if (const auto date = writtenDateAt(text_, at_)) {
            const std::size_t after = at_ + date->length;
            if (after == text_.size() || !continuesName(text_[after])) return readDate(token, *date);
        }
        std::size_t end = at_;
        while (end < text_.size() && (isDigit(text_[end]) || text_[end] == '.'))
            ++end;
        if (end < text_.size() && (text_[end] == 'e' || text_[end] == 'E')) {
            std::size_t exponent = end + 1;
            if (exponent < text_.size() && (text_[exponent] == '+' || text_[exponent] == '-')) ++exponent;
            if (exponent < text_.size() && isDigit(text_[exponent])) end = exponent;
            while (end < text_.size() && isDigit(text_[end]))
                ++end;
        }
        const NumberText number = readNumber(text_.substr(at_, end - at_));
        const std::string written = "'" + brief(text_.substr(at_, end - at_)) + "'";
        if (number.form == NumberForm::TooBig) fail(written + " is too big a number");
        if (number.form == NumberForm::None) fail(written + " is not a number");
        if (end < text_.size() && continuesName(text_[end])) {
            fail("a number and a name run together in " + wordAt(at_) +
                 "; put a sign such as * between them, or the name in backquotes (`...`)");
        }
        token.kind = TokenKind::Number;
        token.value = number.value;
        at_ = end;
    }

    void readDate(Token& token, const WrittenDate& date) {
        if (date.foreign) {
            const bool points = text_.substr(at_, date.length).find('.') != std::string_view::npos;
            fail(std::string(dateIsWritten) +
                 (points ? "" : "; if this is to be calculated, put blanks around the signs"));
        }
        if (!date.dayNumber) fail("there is no such day; put blanks around the signs to subtract");
        token.kind = TokenKind::Date;
        token.value = *date.dayNumber;
        at_ += date.length;
    }

    void readName(Token& token) {
        std::size_t end = at_;
        while (end < text_.size() && continuesName(text_[end]))
            ++end;
        token.text = text_.substr(at_, end - at_);
        token.kind = equalIgnoringCase(token.text, "and")   ? TokenKind::And
                     : equalIgnoringCase(token.text, "or")  ? TokenKind::Or
                     : equalIgnoringCase(token.text, "not") ? TokenKind::Not
                                                            : TokenKind::Name;
        at_ = end;
    }

    void readQuoted(Token& token) {
        const char quote = text_[at_];
        std::size_t end = at_ + 1;
        for (;; ++end) {
            if (end == text_.size()) fail(std::string("the closing ") + quote + " is missing");
            if (text_[end] == quote) {
                if (end + 1 == text_.size() || text_[end + 1] != quote) break;
                ++end; // doubled: means itself
            }
            token.text += text_[end];
        }
        token.kind = quote == '`' ? TokenKind::QuotedName : TokenKind::Text;
        at_ = end + 1;
    }

    void readSign(Token& token) {
        for (const Sign& sign : signs) {
            if (!text_.substr(at_).starts_with(sign.written)) continue;
            token.kind = sign.kind;
            token.text = sign.meaning;
            at_ += sign.written.size();
            return;
        }
        fail("the character '" + withEscapes(text_.substr(at_, 1)) +
             "' has no meaning here; put a name that contains it in backquotes (`...`)");
    }

    /// The characters from a place on that could be a number or a name.
    std::string wordAt(std::size_t begin) const {
        std::size_t end = begin;
        while (end < text_.size() && continuesName(text_[end]))
            ++end;
        return "'" + brief(text_.substr(begin, end - begin)) + "'";
    }

    [[noreturn]] void fail(std::string_view what) const { throw ExpressionError(text_, at_, what); }

    std::string_view text_;
    std::size_t at_ = 0;
    std::vector<Token> tokens_;
};

} // namespace

std::vector<Token> tokenize(std::string_view expression) {
    return Tokenizer(expression).run();
}

} // namespace korvana
