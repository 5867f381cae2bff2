#include "module/regression/CDefineRegDlg2.h"

#include "module/regression/RegressionMessages.h"
#include "module/regression/timedependent/CompiledCovariates.h"
#include "module/regression/timedependent/CovariateFaults.h"
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
    const DefinedCovariate fields = selected == noEntry ? DefinedCovariate{ProposedName(list), {}}
                                                        : list[static_cast<std::size_t>(selected)];
    SetValue(TimeName, fields.name);
    SetValue(TimeExpression, fields.expression);
}

void CDefineRegDlg2::OnValueChanged(int control) {
    std::vector<DefinedCovariate>& list = State().settings.expressions;
    const auto take = [&](std::string DefinedCovariate::*field) {
        const auto& texts = ValueAs<std::vector<std::string>>(control);
        for (DefinedCovariate& each : list)
            (each.*field).clear();
        // There are as many as names; further expressions wait for theirs.
        list.resize(control == TimeNames ? texts.size() : std::max(list.size(), texts.size()));
        for (std::size_t k = 0; k < texts.size(); ++k)
            list[k].*field = CleanText(texts[k]);
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

void CDefineRegDlg2::TakeAll() {
    RegressionSettings& settings = State().settings;
    const int selected = ValueAs<int>(TimeTable);
    const std::string name = ValueAs<std::string>(TimeName);
    const std::string expression = ValueAs<std::string>(TimeExpression);
    settings.kind = RegressionKind::TimeDependent; // for which there is no control
    settings.expressions.clear();
    for (const std::vector<std::string>& row : EntriesOf(TimeTable))
        settings.expressions.push_back({row[0], row[1]});
    RegressionSpecification::TakeAll();
    SetValue(TimeTable, selected);
    SetValue(TimeName, name);
    SetValue(TimeExpression, expression);
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
    int selected = ValueAs<int>(TimeTable);
    const std::string text = CleanText(ValueAs<std::string>(TimeExpression));
    DefinedCovariate covariate{CleanText(ValueAs<std::string>(TimeName)), CutTo(text, expressionWidth)};
    if (const std::string fault = FaultOfName(covariate.name); !fault.empty()) {
        ShowMessage(StrTimeBadCovariate, fault);
        return false;
    }
    if (covariate.expression.empty()) {
        ShowMessage(StrTimeBadCovariate, Filled(StrTimeNoExpression, {Quoted(covariate.name)}));
        return false;
    }
    const auto place = FindDefined(list, covariate.name);
    // What has the same name is what people mean if they highlight nothing.
    if (replace && selected == noEntry && place) selected = static_cast<int>(*place);
    if (replace && selected == noEntry) {
        ShowMessage(StrTimeReplaceWhat);
        return false;
    }
    if (place && !(replace && *place == static_cast<std::size_t>(selected))) {
        ShowMessage(StrTimeBadCovariate, Filled(StrTimeTwice, {Quoted(covariate.name)}));
        return false;
    }
    if (!replace && list.size() == mostDefined) {
        ShowMessage(StrTimeTooMany);
        return false;
    }
    const bool cut = covariate.expression.size() < text.size();
    CompiledCovariates compiled;
    if (const auto fault = compiled.Compile(Analysis(), {&covariate, 1}); !cut && !fault.text.empty()) {
        ShowFault(covariate, fault.text);
        return false;
    }
    const std::size_t at = replace ? static_cast<std::size_t>(selected) : list.size();
    if (replace)
        list[at] = std::move(covariate);
    else
        list.push_back(std::move(covariate));
    ShowList(replace ? selected : noEntry);
    if (cut) ShowMessage(StrTimeTooLong);
    return true;
}

void CDefineRegDlg2::ShowFault(const DefinedCovariate& covariate, const std::string& why) {
    ShowMessage(StrTimeFault, Filled(StrTimeFaultDetail, {covariate.name, covariate.expression, why}));
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
    const std::string name = ValueAs<std::string>(TimeName);
    const std::string expression = ValueAs<std::string>(TimeExpression);
    const int selected = ValueAs<int>(TimeTable);
    ShowList(noEntry);
    if (selected != noEntry || CleanText(expression).empty()) return true;
    SetValue(TimeName, name); // what was typed is still to be added
    SetValue(TimeExpression, expression);
    return true;
}

bool CDefineRegDlg2::TypedIsTaken() {
    const std::vector<DefinedCovariate>& list = State().settings.expressions;
    const std::string expression = CleanText(ValueAs<std::string>(TimeExpression));
    const std::string name = CleanText(ValueAs<std::string>(TimeName));
    if (expression.empty() || std::ranges::find(list, DefinedCovariate{name, expression}) != list.end())
        return true;
    const auto place = FindDefined(list, name);
    const int selected = ValueAs<int>(TimeTable);
    const bool ofSelected = place && selected != noEntry && *place == static_cast<std::size_t>(selected);
    // One that was cut is looked at before anything runs.
    return TakeFields(ofSelected) && CharactersOf(expression) <= expressionWidth;
}

bool CDefineRegDlg2::CovariatesAreValid() {
    std::vector<DefinedCovariate>& list = State().settings.expressions;
    if (const ListFault fault = FaultOf(list); fault.message != 0) {
        if (list.size() > mostDefined) { // which the message says, and OK again does
            list.resize(mostDefined);
            ShowList(noEntry);
        }
        ShowMessage(fault.message, fault.detail);
        return false;
    }
    CompiledCovariates compiled;
    const CompiledCovariates::Fault fault = compiled.Compile(Analysis(), list);
    if (!fault.text.empty()) {
        ShowFault(list[fault.covariate], fault.text);
        return false;
    }
    if (compiled.Variables().size() <= mostVariablesOfExpressions) return true;
    ShowMessage(StrTimeTooManyVariables);
    return false;
}

void CDefineRegDlg2::Run() {
    if (CommonSelectionsAreValid() && TypedIsTaken() && CovariatesAreValid())
        ExitDialog(StepRegSpec, ExitMode::Forward);
}

} // namespace ozm::survival
