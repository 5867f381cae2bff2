#include "apps/desktop/dialogs/Codes.h"

#include "apps/desktop/WaitCursor.h"
#include "support/CAnalysisSupport.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace korvana::desktop {

CodeOffer offeredCodes(ozm::CAnalysisSupport& analysis, int variable,
                       const ozm::DefaultCodeOptions& options) {
    CodeOffer offer;
    // This reads all cases, possibly very many.
    const WaitCursor cursor;
    const int distinct = analysis.ReadDataToGetDefaultCodes(variable, options, offer.codes);
    offer.failed = distinct < 0;
    offer.more = std::max(distinct - static_cast<int>(offer.codes.size()), 0);
    return offer;
}

QString codeText(double code) {
    return std::isnan(code) ? QString{} : QString::number(code, 'g', QLocale::FloatingPointShortest);
}

QString codeText(double code, int decimals) {
    constexpr int widest = 17;                                 // the digits that a double can have
    QString text = QString::number(code + 0.0, 'f', decimals); // no sign before a zero
    if (text.contains(QLatin1Char('.'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.'))) text.chop(1);
    }
    return std::isnan(code) || text.size() > widest ? codeText(code) : text;
}

QString offerText(const QString& text, const ozm::CodeCount& code) {
    const QString label = code.text.empty() ? QString{} : " = " + QString::fromStdString(code.text);
    return text + label +
           (code.cases == 1 ? QStringLiteral(" (1 case)") : QStringLiteral(" (%1 cases)").arg(code.cases));
}

QString codeLabel(ozm::CAnalysisSupport& analysis, int variable, double code) {
    std::string text;
    if (variable == 0 || std::isnan(code) ||
        analysis.vvlcod8(variable, ozm::LabelLookup::TextOfCode, text, code) != 1)
        return {};
    return QString::fromStdString(text);
}

std::optional<double> codeOfText(ozm::CAnalysisSupport& analysis, int variable, const QString& text) {
    std::string wanted = text.trimmed().toStdString();
    double code = 0.0;
    if (variable != 0 && analysis.vvlcod8(variable, ozm::LabelLookup::CodeOfText, wanted, code) == 1)
        return code;
    bool isNumber = false;
    code = text.trimmed().toDouble(&isNumber);
    return isNumber && std::isfinite(code) ? std::optional(code) : std::nullopt;
}

QString noCode(const QString& text, int variable) {
    return variable != 0
               ? QStringLiteral("'%1' is neither a number nor a value label of the variable; open the list "
                                "to see its codes.")
                     .arg(text)
               : QStringLiteral("'%1' is not a number. Value labels can be entered once the variable is "
                                "chosen.")
                     .arg(text);
}

} // namespace korvana::desktop
