#include "module/regression/CDefineRegDlg2.h"

#include "module/regression/timedependent/CompiledCovariates.h"
#include "module/regression/timedependent/ExpressionFile.h"
#include "module/resources/Resources.h"
#include "module/resources/StepNumbers.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/ReportLines.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace ozm::survival {
namespace {

std::string Quoted(const std::string& name) {
    return "'" + name + "'";
}

std::string CountOf(std::size_t count) {
    return FormatCount(static_cast<long long>(count));
}

/// Why a name cannot be that of a covariate; empty: it can.
std::string FaultOfName(const std::string& name) {
    if (name.empty()) return Whole(StrTimeNoName);
    if (name.find('=') != std::string::npos || name.find_first_of("[;#") == 0)
        return Filled(StrTimeBadName, {Quoted(name)});
    if (const std::size_t characters = CharactersOf(name); characters > nameWidth)
        return Filled(StrTimeLongName, {Quoted(name), CountOf(characters)});
    return {};
}

} // namespace

CDefineRegDlg2::CDefineRegDlg2(CAnalysisSupport& host, SharedSettings& shared, RegressionState& state)
    : RegressionSpecification(host, timeDependentTemplate, timeDependentInterface, shared, state) {}

void CDefineRegDlg2::OnOpen() {
    RegressionSpecification::OnOpen();
    ShowList(noEntry);
}

void CDefineRegDlg2::ShowList(int selected) {
    const std::vector<DefinedCovariate>& list = State().settings.expressions;
    ListRows rows;
    std::vector<std::string> names;
    std::vector<std::string> expressions;
    for (const DefinedCovariate& each : list) {
        rows.push_back({each.name, each.expression});
        names.push_back(each.name);
        expressions.push_back(each.expression);
    }
    SetEntries(TimeTable, std::move(rows));
    SetValue(TimeTable, selected);
    SetValue(TimeNames, std::move(names));
    SetValue(TimeExpressions, std::move(expressions));
    SetValue(TimeName, ProposedName(list));
    SetValue(TimeExpression, std::string{});
}

void CDefineRegDlg2::OnValueChanged(int control) {
    std::vector<DefinedCovariate>& list = State().settings.expressions;
    const auto take = [&](std::string DefinedCovariate::*field) {
        const auto& texts = ValueAs<std::vector<std::string>>(control);
        // The other list may still have fewer, or more.
        list.resize(texts.size());
        for (std::size_t k = 0; k < texts.size(); ++k)
            list[k].*field = TrimmedText(texts[k]);
    };
    switch (control) {
    case TimeNames:
        take(&DefinedCovariate::name);
        ShowList(noEntry);
        break;
    case TimeExpressions:
        take(&DefinedCovariate::expression);
        ShowList(noEntry);
        break;
    case TimeTable:
        if (const int row = ValueAs<int>(control); row != noEntry) {
            SetValue(TimeName, list[static_cast<std::size_t>(row)].name);
            SetValue(TimeExpression, list[static_cast<std::size_t>(row)].expression);
        }
        break;
    case TimeName:
    case TimeExpression:
        break; // until a button takes them
    default:
        RegressionSpecification::OnValueChanged(control);
    }
}

bool CDefineRegDlg2::OnCommand(int control) {
    switch (control) {
    case TimeAdd:
        return TakeFields(false);
    case TimeReplace:
        return TakeFields(true);
    case TimeDelete:
        return Delete();
    case TimeOpen:
        return Open();
    case TimeSave:
        return SaveExpressions(Analysis(), this, State().settings.expressions);
    default:
        return RegressionSpecification::OnCommand(control);
    }
}

bool CDefineRegDlg2::TakeFields(bool replace) {
    std::vector<DefinedCovariate>& list = State().settings.expressions;
    const int selected = ValueAs<int>(TimeTable);
    const std::string text = TrimmedText(ValueAs<std::string>(TimeExpression));
    DefinedCovariate covariate{TrimmedText(ValueAs<std::string>(TimeName)), CutTo(text, expressionWidth)};
    if (const std::string fault = FaultOfName(covariate.name); !fault.empty()) {
        ShowMessage(StrTimeBadCovariate, fault);
        return false;
    }
    if (covariate.expression.empty()) {
        ShowMessage(StrTimeBadCovariate, Filled(StrTimeNoExpression, {Quoted(covariate.name)}));
        return false;
    }
    replace = replace && selected != noEntry;
    const auto place = FindDefined(list, covariate.name);
    if (place && !(replace && *place == static_cast<std::size_t>(selected))) {
        ShowMessage(StrTimeBadCovariate, Filled(StrTimeTwice, {Quoted(covariate.name)}));
        return false;
    }
    if (!replace && list.size() == mostDefined) {
        ShowMessage(StrTimeTooMany);
        return false;
    }
    const bool cut = covariate.expression.size() < text.size();
    const std::size_t at = replace ? static_cast<std::size_t>(selected) : list.size();
    if (replace)
        list[at] = std::move(covariate);
    else
        list.push_back(std::move(covariate));
    ShowList(replace ? selected : noEntry);
    if (cut) ShowMessage(StrTimeTooLong);
    return true;
}

bool CDefineRegDlg2::Delete() {
    std::vector<DefinedCovariate>& list = State().settings.expressions;
    const int selected = ValueAs<int>(TimeTable);
    if (list.empty() || selected == noEntry) {
        ShowMessage(list.empty() ? StrTimeNothingToDelete : StrTimeDeleteWhat);
        return false;
    }
    list.erase(list.begin() + selected);
    ShowList(std::min(selected, static_cast<int>(list.size()) - 1));
    return true;
}

bool CDefineRegDlg2::Open() {
    if (!OpenExpressions(Analysis(), this, State().settings.expressions)) return false;
    ShowList(noEntry);
    return true;
}

bool CDefineRegDlg2::CovariatesAreValid() {
    const std::vector<DefinedCovariate>& list = State().settings.expressions;
    const auto refuse = [this](const std::string& why) {
        ShowMessage(StrTimeBadCovariate, why);
        return false;
    };
    if (list.empty()) {
        ShowMessage(StrTimeNoCovariates);
        return false;
    }
    if (list.size() > mostDefined) {
        ShowMessage(StrTimeTooMany);
        return false;
    }
    for (std::size_t k = 0; k < list.size(); ++k) {
        if (const std::string fault = FaultOfName(list[k].name); !fault.empty()) return refuse(fault);
        if (FindDefined(list, list[k].name) != k) return refuse(Filled(StrTimeTwice, {Quoted(list[k].name)}));
        if (list[k].expression.empty()) return refuse(Filled(StrTimeNoExpression, {Quoted(list[k].name)}));
        if (const std::size_t characters = CharactersOf(list[k].expression); characters > expressionWidth)
            return refuse(Filled(StrTimeLongExpression, {Quoted(list[k].name), CountOf(characters)}));
    }
    CompiledCovariates compiled;
    const CompiledCovariates::Fault fault = compiled.Compile(Analysis(), list);
    if (!fault.text.empty()) {
        ShowMessage(StrTimeFault, Filled(StrTimeFaultDetail, {list[fault.covariate].name,
                                                              list[fault.covariate].expression, fault.text}));
        return false;
    }
    if (compiled.Variables().size() <= mostVariablesOfExpressions) return true;
    ShowMessage(StrTimeTooManyVariables);
    return false;
}

void CDefineRegDlg2::Run() {
    if (CommonSelectionsAreValid() && CovariatesAreValid()) ExitDialog(StepRegSpec, ExitMode::Forward);
}

} // namespace ozm::survival
