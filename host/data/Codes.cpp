#include "host/data/Codes.h"

#include "host/data/DateText.h"
#include "host/data/NumberText.h"
#include "host/data/TextEncoding.h"

namespace korvana {

std::optional<double> resolveCode(const DataSet& data, int variable, std::string_view text) {
    const Variable& known = data.variable(variable);
    if (const auto value = known.valueOf(text)) return value;
    text = trimmed(text);
    if (const auto value = known.valueOf(text)) return value;
    // A label with control characters is given in the form that messages show.
    if (text.find('\\') != std::string_view::npos)
        for (const ValueLabel& label : known.valueLabels)
            if (withEscapes(label.text) == text) return label.value;
    if (known.kind == VariableKind::Date) {
        // With the year first there is only one reading.
        const auto date = readDateText(text);
        if (date && date->yearFirst) return dayNumberOf(*date, DateOrder::YearMonthDay);
    }
    const NumberText number = readNumber(text);
    if (number.form == NumberForm::Finite) return number.value;
    return std::nullopt;
}

} // namespace korvana
