#include "apps/desktop/data/ExpressionPieces.h"

#include "apps/desktop/data/GridText.h"
#include "host/data/Expression.h"
#include "host/data/ExpressionFunctions.h"
#include "host/data/ExpressionTokens.h"
#include "host/data/NameMatch.h"

#include <algorithm>

namespace korvana::desktop {
namespace {

bool isPlainName(const std::string& name) {
    const auto functions = expressionFunctions();
    if (equalIgnoringCase(name, "pi") ||
        std::any_of(functions.begin(), functions.end(),
                    [&](const ExpressionFunction& each) { return equalIgnoringCase(each.name, name); }))
        return false;
    try {
        const std::vector<Token> tokens = tokenize(name);
        return tokens.size() == 2 && tokens.front().kind == TokenKind::Name && tokens.front().text == name;
    } catch (const ExpressionError&) {
        return false;
    }
}

QString quoted(const std::string& text, QChar quote) {
    QString inner = QString::fromStdString(text);
    inner.replace(quote, QString(2, quote));
    return quote + inner + quote;
}

} // namespace

QString expressionName(const std::string& name) {
    return isPlainName(name) ? QString::fromStdString(name) : quoted(name, QLatin1Char('`'));
}

QString expressionValue(const Variable& variable, double value) {
    if (variable.kind == VariableKind::Text) {
        if (const auto label = variable.labelOf(value)) return quoted(std::string(*label), QLatin1Char('\''));
    }
    return valueText(variable, value, false);
}

QString comparisonPiece(const Variable& variable, double value, const QString& before) {
    const QString text = expressionValue(variable, value);
    if (!before.isEmpty() && QStringLiteral("=<>!+-*/^,").contains(before.back())) return text;
    const QString name = expressionName(variable.name);
    if (before.endsWith(name, Qt::CaseInsensitive)) {
        const qsizetype start = before.size() - name.size();
        const bool whole = start == 0 || !(before.at(start - 1).isLetterOrNumber() ||
                                           QStringLiteral("_.`").contains(before.at(start - 1)));
        if (whole) return QStringLiteral("= ") + text;
    }
    return name + QStringLiteral(" = ") + text;
}

} // namespace korvana::desktop
