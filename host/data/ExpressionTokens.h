#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvana {

enum class TokenKind {
    Number,
    Date,       ///< 1995-01-15
    Name,       ///< an identifier
    QuotedName, ///< in backquotes: never a word of the language
    Text,       ///< in quotation marks
    And,
    Or,
    Not,
    Compare,  ///< canonical spelling: = != < <= > >=
    Operator, ///< + - * / ^
    Open,
    Close,
    Comma,
    End
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::size_t position = 0; ///< in the expression
    std::string text;         ///< canonical spelling, or the text between the quotes
    double value = 0;         ///< of a number or date
};

/// Splits an expression into tokens; the last is End. Throws ExpressionError.
std::vector<Token> tokenize(std::string_view expression);

} // namespace korvana
