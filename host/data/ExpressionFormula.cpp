#include "host/data/ExpressionFormula.h"

#include "host/data/Codes.h"
#include "host/data/DayNumber.h"
#include "host/data/Describe.h"
#include "host/data/ExpressionDates.h"
#include "host/data/ExpressionFunctions.h"
#include "host/data/ExpressionNames.h"
#include "host/data/ExpressionTokens.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

#include <algorithm>
#include <numbers>
#include <optional>
#include <utility>

namespace korvana {
namespace {

/// An open pair of parentheses, or the whole expression.
struct Level {
    const ExpressionFunction* function = nullptr; ///< whose arguments these are
    std::size_t position = 0;
    int arguments = 1;
    bool compared = false; ///< the current operand of and / or contains a comparison
};

class Translator {
public:
    Translator(std::string_view expression, const DataSet& data, std::span<const NamedInput> inputs)
        : expression_(expression), data_(data), names_(data, inputs), tokens_(tokenize(expression)) {}

    ExpressionFormula run() {
        if (tokens_.size() == 1) fail(0, "the expression is empty");
        takeTextsForNames();
        for (; now().kind != TokenKind::End; ++at_) {
            if (operandDue_) {
                takeOperand();
            } else {
                takeOperator();
            }
        }
        if (operandDue_)
            fail(now().position, "the expression breaks off; a variable, a number or ( should follow");
        if (levels_.size() > 1) fail(levels_.back().position, "this ( is never closed");
        checkDates(expression_, tokens_, [this](const Token& name) {
            const auto variable = names_.findVariable(name);
            return variable && data_.variable(*variable).kind == VariableKind::Date;
        });
        formula_.program = builder_.take();
        constexpr std::size_t mostSlots = 1000; // each needs memory for some hundred cases
        if (formula_.program.slots > mostSlots)
            fail(0, "there are too many parentheses within parentheses; compute a part as a variable first");
        return std::move(formula_);
    }

private:
    const Token& now() const { return tokens_[at_]; }
    TokenKind kindAt(std::size_t i) const { return i < tokens_.size() ? tokens_[i].kind : TokenKind::End; }
    static bool isName(TokenKind kind) { return kind == TokenKind::Name || kind == TokenKind::QuotedName; }

    [[noreturn]] void fail(std::size_t position, std::string_view what) const {
        throw ExpressionError(expression_, position, what);
    }

    /// A token as it is written, in quotes.
    std::string written(std::size_t at) const {
        const std::size_t begin = tokens_[at].position;
        const std::size_t end = at + 1 < tokens_.size() ? tokens_[at + 1].position : expression_.size();
        const std::string word = brief(trimmed(expression_.substr(begin, end - begin)));
        const bool quoted = tokens_[at].kind == TokenKind::Text || tokens_[at].kind == TokenKind::QuotedName;
        return quoted ? word : "'" + word + "'";
    }

    /// A text is the name of a variable where no label can be meant: not next to a comparison with a name or
    /// with another text.
    void takeTextsForNames() {
        const auto isMeant = [this](std::size_t other) {
            return isName(kindAt(other)) || kindAt(other) == TokenKind::Text;
        };
        const auto comparedWithName = [&](std::size_t at) {
            return (at >= 2 && kindAt(at - 1) == TokenKind::Compare && isMeant(at - 2)) ||
                   (kindAt(at + 1) == TokenKind::Compare && isMeant(at + 2));
        };
        std::vector<std::size_t> names;
        for (std::size_t at = 0; at < tokens_.size(); ++at)
            if (kindAt(at) == TokenKind::Text && !comparedWithName(at) &&
                !readIsoDate(tokens_[at].text).dayNumber && names_.find(tokens_[at]))
                names.push_back(at);
        for (const std::size_t at : names)
            tokens_[at].kind = TokenKind::QuotedName;
    }

    void takeConstant(double value) {
        builder_.constant(value);
        operandDue_ = false;
    }

    void open(const ExpressionFunction* function, std::size_t position) {
        levels_.push_back({function, position});
        builder_.open();
    }

    void takeOperand() {
        const Token& token = now();
        switch (token.kind) {
        case TokenKind::Number:
        case TokenKind::Date:
            return takeConstant(token.value);
        case TokenKind::Text:
            return takeConstant(codeOfText());
        case TokenKind::Name:
            if (kindAt(at_ + 1) == TokenKind::Open) return openFunction();
            takeName();
            return;
        case TokenKind::QuotedName:
            takeName();
            return;
        case TokenKind::Open:
            return open(nullptr, token.position);
        case TokenKind::Not:
            if (!beginsOperand(at_))
                fail(token.position, "put the part that begins with this 'not' in parentheses");
            return builder_.prefix(operationNot, Binding::Not);
        case TokenKind::Operator:
            if (token.text == "-" || token.text == "+") return takeSigns();
            break;
        default:
            break;
        }
        fail(token.position, "a variable, a number or ( is expected here, not " + written(at_));
    }

    void takeSigns() {
        bool negative = false;
        for (;; ++at_) {
            if (now().text == "-") negative = !negative;
            const Token& next = tokens_[at_ + 1];
            if (next.kind != TokenKind::Operator || (next.text != "-" && next.text != "+")) break;
        }
        if (negative) builder_.prefix(operationNegate, Binding::Sign);
    }

    void takeOperator() {
        const Token& token = now();
        Level& level = levels_.back();
        operandDue_ = true;
        switch (token.kind) {
        case TokenKind::And:
        case TokenKind::Or:
            level.compared = false;
            return token.kind == TokenKind::And ? builder_.infix(operationAnd, Binding::And)
                                                : builder_.infix(operationOr, Binding::Or);
        case TokenKind::Compare:
            if (level.compared)
                fail(token.position, "two comparisons in a row; join them, as in 1 < x and x < 3");
            level.compared = true;
            return builder_.infix(relation(token.text), Binding::Comparison);
        case TokenKind::Operator:
            return takeArithmetic(token.text.front());
        case TokenKind::Comma:
            if (level.function == nullptr) {
                fail(token.position,
                     "a comma separates arguments of functions only; write numbers with a decimal point");
            }
            ++level.arguments;
            level.compared = false;
            return builder_.comma();
        case TokenKind::Close:
            return closeLevel();
        default:
            fail(token.position, "an operator such as = or 'and' is expected before " + written(at_));
        }
    }

    static const ExpressionOperation& relation(std::string_view sign) {
        return sign == "="    ? operationEqual
               : sign == "!=" ? operationUnequal
               : sign == "<"  ? operationLess
               : sign == "<=" ? operationLessOrEqual
               : sign == ">"  ? operationGreater
                              : operationGreaterOrEqual;
    }

    void takeArithmetic(char sign) {
        switch (sign) {
        case '+':
            return builder_.infix(operationAdd, Binding::Sum);
        case '-':
            return builder_.infix(operationSubtract, Binding::Sum);
        case '*':
            return builder_.infix(operationMultiply, Binding::Product);
        case '/':
            return builder_.infix(operationDivide, Binding::Product);
        default:
            return builder_.infix(operationPower, Binding::Power);
        }
    }

    /// Whether a token is at the beginning of a truth value.
    bool beginsOperand(std::size_t at) const {
        if (at == 0) return true;
        const TokenKind before = kindAt(at - 1);
        return before == TokenKind::And || before == TokenKind::Or || before == TokenKind::Not ||
               before == TokenKind::Open || before == TokenKind::Comma;
    }

    bool endsOperand(std::size_t at) const {
        const TokenKind after = kindAt(at + 1);
        return after == TokenKind::And || after == TokenKind::Or || after == TokenKind::Close ||
               after == TokenKind::Comma || after == TokenKind::End;
    }

    void openFunction() {
        const Token& name = now();
        const ExpressionFunction* function = nullptr;
        std::vector<std::string_view> names;
        for (const ExpressionFunction& each : expressionFunctions()) {
            if (equalIgnoringCase(each.name, name.text)) function = &each;
            names.push_back(each.name);
        }
        if (function == nullptr) {
            fail(name.position, std::string("there is no function '")
                                    .append(name.text)
                                    .append("'")
                                    .append(didYouMean(nearestOf(name.text, names, 3))));
        }
        ++at_;
        open(function, name.position);
        if (function->name != "missing") return;
        if (!isName(kindAt(at_ + 1)) || kindAt(at_ + 2) != TokenKind::Close)
            fail(name.position, "missing( ) tests one variable, as in missing(age)");
        ++at_;
        formula_.tested[takeName()] = true;
    }

    void closeLevel() {
        if (levels_.size() == 1) fail(now().position, "there is no ( for this )");
        const Level level = levels_.back();
        levels_.pop_back();
        operandDue_ = false;
        if (level.function == nullptr) return builder_.close(nullptr, 1);
        const int fewest = level.function->fewest;
        const int most = level.function->most;
        if (level.arguments >= fewest && level.arguments <= most)
            return builder_.close(level.function->operation, level.arguments);
        const bool tooMany = most > fewest && level.arguments > most;
        const int told = tooMany ? most : fewest;
        fail(level.position, std::string(level.function->name)
                                 .append(tooMany ? "( ) takes at most " : "( ) takes ")
                                 .append(std::to_string(told))
                                 .append(told == 1 ? " argument" : " arguments")
                                 .append(most > fewest && !tooMany ? " or more" : ""));
    }

    /// Takes the variable, input or constant with this name; returns its place among the references (0 for a
    /// constant).
    std::size_t takeName() {
        const Token& token = now();
        operandDue_ = false;
        const auto meaning = names_.find(token);
        if (!meaning) {
            if (token.kind == TokenKind::Name && equalIgnoringCase(token.text, "pi") && !inMissing()) {
                takeConstant(std::numbers::pi);
                return 0;
            }
            const bool compared =
                kindAt(at_ + 1) == TokenKind::Compare || (at_ > 0 && kindAt(at_ - 1) == TokenKind::Compare);
            fail(token.position, names_.whyUnknown(token, compared));
        }
        const auto known =
            std::find(formula_.references.begin(), formula_.references.end(), meaning->reference);
        const auto place = static_cast<std::size_t>(known - formula_.references.begin());
        if (known == formula_.references.end()) {
            formula_.references.push_back(meaning->reference);
            formula_.tested.push_back(false);
            formula_.byNumber.push_back(false);
        }
        if (meaning->byNumber) formula_.byNumber[place] = true;
        builder_.input(place);
        return place;
    }

    bool inMissing() const {
        const ExpressionFunction* function = levels_.back().function;
        return function != nullptr && function->name == "missing";
    }

    /// The value that a text means next to a comparison with a variable.
    double codeOfText() const {
        const Token& text = now();
        const std::size_t last = at_;
        const bool right = last >= 2 && kindAt(last - 1) == TokenKind::Compare && isName(kindAt(last - 2)) &&
                           beginsOperand(last - 2) && endsOperand(last);
        const bool left = beginsOperand(last) && kindAt(last + 1) == TokenKind::Compare &&
                          isName(kindAt(last + 2)) && endsOperand(last + 2);
        if (right || left) {
            const auto variable = names_.findVariable(tokens_[right ? last - 2 : last + 2]);
            if (variable) return codeOf(*variable, text);
        }
        if (const auto day = readIsoDate(text.text).dayNumber) return *day;
        fail(text.position,
             "a text can only be compared with a variable, as in group = 'a'; a name with blanks belongs "
             "in backquotes (`...`)");
    }

    double codeOf(int variable, const Token& text) const {
        if (const auto code = resolveCode(data_, variable, text.text)) return *code;
        const Variable& known = data_.variable(variable);
        std::vector<std::string_view> labels;
        constexpr std::size_t mostLabels = 10'000; // searching more for similar ones takes too long
        for (std::size_t i = 0; i < known.valueLabels.size() && i < mostLabels; ++i)
            labels.emplace_back(known.valueLabels[i].text);
        fail(text.position, std::string("variable '")
                                .append(brief(known.name))
                                .append("' has no value '")
                                .append(brief(text.text))
                                .append("'")
                                .append(didYouMean(nearestOf(text.text, labels, 3)))
                                .append("; it has ")
                                .append(fewCodesText(data_, variable))
                                .append(names_.find(text) ? "; the name of a variable to compare with "
                                                            "belongs in backquotes (`...`)"
                                                          : "")
                                .append(known.kind == VariableKind::Date ? "; " : "")
                                .append(known.kind == VariableKind::Date ? dateIsWritten : ""));
    }

    std::string_view expression_;
    const DataSet& data_;
    ExpressionNames names_;
    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    bool operandDue_ = true;
    std::vector<Level> levels_{Level{}};
    ExpressionFormula formula_;
    ExpressionBuilder builder_;
};

} // namespace

ExpressionFormula translate(std::string_view expression, const DataSet& data,
                            std::span<const NamedInput> inputs) {
    return Translator(expression, data, inputs).run();
}

} // namespace korvana
