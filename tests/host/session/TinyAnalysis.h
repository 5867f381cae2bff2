#pragma once
// An analysis of two dialogs, as small as one can be: "Specify" asks for a variable, a number and a switch;
// its OK sums the variable over the cases and goes on to "Results", whose button writes one of each output.
// "Specify" has two forms; setting its switch changes from one to the other.

#include "host/data/DataSet.h"
#include "host/session/Session.h"
#include "support/CAnalysisSupport.h"
#include "support/dialogs/CAnalysisModelessDialog.h"
#include "tests/support/MakeData.h"

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tiny {

using namespace ozm;

enum Step { Prepare = 10, Specify = 20, Results = 30 };
enum Control { Variables = 101, Number, Write, Throw, Leave, Code, Digits, Short };

inline constexpr RoleTemplate roles[] = {{"Summed", 0, 1, 1}};
inline constexpr ControlTemplate specifyControls[] = {
    {ControlOk, ControlKind::PushButton, "OK", {}, 0, -1, {}, {}},
    {ControlCancel, ControlKind::PushButton, "Cancel", {}, 0, -1, {}, {}},
    {Variables, ControlKind::VariableSelection, "Variables", {}, 0, 0, roles, {}},
    {Number, ControlKind::Integer, "Leaves to this step", {}, 0, -1, {}, {}},
    {Leave, ControlKind::PushButton, "Leave", {}, 0, -1, {}, {}},
    {Code, ControlKind::CodeField, "&Code to sum:", {}, 0, 0, {}, {}},
    {Short, ControlKind::CheckBox, "Short form", {}, 0, -1, {}, {}},
};
inline constexpr ControlTemplate shortControls[] = {
    {ControlOk, ControlKind::PushButton, "OK", {}, 0, -1, {}, {}},
    {Variables, ControlKind::VariableSelection, "Variables", {}, 0, 0, roles, {}},
    {Short, ControlKind::CheckBox, "Short form", {}, 0, -1, {}, {}},
};
inline constexpr ControlTemplate resultsControls[] = {
    {ControlCancel, ControlKind::PushButton, "Cancel", {}, 0, -1, {}, {}},
    {Write, ControlKind::PushButton, "!249&Write && show", {}, 0, -1, {}, {}},
    {Digits, ControlKind::Integer, "Digits", {}, 0, -1, {}, {}},
    {Throw, ControlKind::PushButton, "Throw", {}, 0, -1, {}, {}},
};
inline constexpr DialogTemplate specifyTemplate{1, "Specify sums", {}, specifyControls};
inline constexpr DialogTemplate shortTemplate{1, "Specify sums", {}, shortControls};
inline constexpr DialogTemplate resultsTemplate{2, "Sums", {}, resultsControls};
inline constexpr AutomationMember specifyMembers[] = {
    {"Variables", MemberKind::Property, MemberType::Variables, Variables, "Variables"},
    {"Number", MemberKind::Property, MemberType::Integer, Number, "Number"},
    {"Code", MemberKind::Property, MemberType::Code, Code, "Code"},
    {"Leave", MemberKind::Action, MemberType::None, Leave, "Leaves to step Number"},
    {"Short", MemberKind::Property, MemberType::Boolean, Short, "Whether this is the short form"},
};
inline constexpr AutomationMember shortMembers[] = {
    {"Variables", MemberKind::Property, MemberType::Variables, Variables, "Variables"},
    {"Short", MemberKind::Property, MemberType::Boolean, Short, "Whether this is the short form"},
};
inline constexpr AutomationMember resultsMembers[] = {
    {"Write", MemberKind::Action, MemberType::None, Write, "Writes the outputs"},
    {"Digits", MemberKind::Property, MemberType::Integer, Digits, "Digits"},
    {"Throw", MemberKind::Action, MemberType::None, Throw, "Fails"},
};
inline constexpr AutomationInterface interfaces[] = {
    {"TinySpecify", "CSpecifyDlg", "Specifies", specifyMembers},
    {"TinyResults", "CResultsDlg", "Shows", resultsMembers},
    {"TinyShort", "CSpecifyDlg", "Specifies in short", shortMembers},
};
inline constexpr TypeLibrary typeLibrary{"Tiny", "A tiny library", {}, interfaces};
inline constexpr StringResource strings[] = {
    {7, "Tiny Analysis"}, {8, "No case has a value."}, {9, "Again?"}, {10, "Another form."}};

class Sums final : public CAnalysisSupport {
public:
    Sums() {
        SetSequenceTable(table);
        resources_.strings = strings;
        resources_.typeLibrary = &typeLibrary;
    }
    ~Sums() override { FreeMem(held); }

    void Initialize() override { ++initialized; }
    int InitializeAfterFileChanged() override { return ++fileChanges; }
    ModuleHandle GetLibInstance() override { return &resources_; }
    std::string GetAnalysisName() override { return GetResourceString(7); }

    /// The sum over the cases; NaN when there is none. Stopped: infinite.
    double Sum(int variable) {
        const int list[] = {variable};
        double value[1] = {};
        double total = 0.0;
        int taken = 0;
        missing = 0;
        dstart(static_cast<unsigned>(ss_nb()));
        for (int i = 1;; ++i) {
            if (pcancel() || IsExternallyCancelled() || Iterations().WasCanceled()) return INFINITY;
            const short answer = cstart(i, value, list);
            if (answer == StopReading) break;
            if (answer == SkipCase) continue;
            if (std::isnan(value[0])) {
                ++missing;
                continue;
            }
            total += value[0];
            ++taken;
        }
        dstop();
        return taken > 0 ? total : NAN;
    }

    int initialized = 0;
    int fileChanges = 0;
    int dialogsAlive = 0;
    bool shortForm = false;
    int prepareAnswers = 1;   ///< 1: no row, so the step that follows by default
    bool failToOpen = false;  ///< the specification dialog throws while it opens
    bool leaveAtOnce = false; ///< it names its own step again while it opens
    bool failInStep = false;
    void* held = nullptr;
    double sum = 0.0;
    int missing = 0; ///< cases without a value in the last sum

private:
    static Sums& Of(CAnalysisSupport& analysis) { return static_cast<Sums&>(analysis); }
    static int DoPrepare(CAnalysisSupport& analysis) { return Of(analysis).prepareAnswers; }
    static int DoSpecify(CAnalysisSupport& analysis);
    static int DoResults(CAnalysisSupport& analysis);
    static constexpr SEQFUNCTTBL table[] = {
        {Prepare, &DoPrepare, Specify}, {Specify, &DoSpecify, 0}, {Results, &DoResults, 0}};
    ModuleResources resources_;
};

class TinyDialog : public CAnalysisModelessDialog {
public:
    using CAnalysisModelessDialog::CAnalysisModelessDialog;

protected:
    bool Exit(int step, ExitMode mode, int page = 0) {
        ExitDialog(step, mode, page);
        return true;
    }
};

class SpecifyDlg final : public TinyDialog {
public:
    explicit SpecifyDlg(Sums& analysis)
        : TinyDialog(analysis, analysis.shortForm ? shortTemplate : specifyTemplate), tiny_(analysis) {
        AttachAutomation(interfaces[analysis.shortForm ? 2 : 0]);
        ++tiny_.dialogsAlive;
    }
    ~SpecifyDlg() override { --tiny_.dialogsAlive; }

private:
    void OnOpen() override {
        if (tiny_.failToOpen) throw std::runtime_error("no window");
        if (tiny_.leaveAtOnce) ExitDialog(Specify, ExitMode::Forward);
        SetValue(Short, tiny_.shortForm);
    }
    void OnValueChanged(int control) override {
        if (control != Short || ValueAs<bool>(Short) == tiny_.shortForm) return;
        tiny_.shortForm = ValueAs<bool>(Short);
        Analysis().DspMessageBox(MessageStyle::Warning, this, 10, "");
        ExitDialog(Specify, ExitMode::SwitchForm, Short);
    }
    bool OnCommand(int control) override {
        if (control == ControlCancel) return Exit(0, ExitMode::Back);
        if (control == Leave) return Exit(ValueAs<int>(Number), ExitMode::SwitchForm, 3);
        const auto& selection = ValueAs<VariableSelection>(Variables);
        if (selection[0].empty()) return false;
        Analysis().FreeMem(tiny_.held);
        if (!Analysis().AllocMem(tiny_.held, 64)) throw std::bad_alloc();
        tiny_.sum = tiny_.Sum(selection[0].front());
        if (std::isinf(tiny_.sum)) return false;
        if (std::isnan(tiny_.sum)) {
            Analysis().DspMessageBox(MessageStyle::Refusal, this, 8, "Variable 1.");
            return false;
        }
        if (tiny_.missing > 0)
            Analysis().DspMessageBox(MessageStyle::Note, nullptr, 0,
                                     std::to_string(tiny_.missing) + " left out.", "");
        return Exit(Results, ExitMode::Forward);
    }
    Sums& tiny_;
};

class ResultsDlg final : public TinyDialog {
public:
    explicit ResultsDlg(Sums& analysis) : TinyDialog(analysis, resultsTemplate), tiny_(analysis) {
        AttachAutomation(interfaces[1]);
    }

private:
    bool OnCommand(int control) override {
        CAnalysisSupport& host = Analysis();
        if (control == ControlCancel) return Exit(Specify, ExitMode::Back);
        if (control == Throw) throw std::runtime_error("broken");
        if (control == Write && (ValueAs<int>(Digits) < 0 || ValueAs<int>(Digits) > 100)) {
            host.DspMessageBox(ValueAs<int>(Digits) < 0 ? MessageStyle::Refusal : MessageStyle::Error, this,
                               8, "");
            return false;
        }
        host.prttop();
        host.writst(100, "Sum");
        host.newline(1);
        host.writst(100, std::to_string(tiny_.sum));
        host.type();
        const double cells[] = {tiny_.sum};
        SheetSpec sheet;
        sheet.title = "Sum";
        sheet.columns.push_back({"Sum", "", CellFormat::fixed(2), std::span<const double>(cells)});
        host.looka4(sheet);
        host.RenameColumn(0, "Total", "");
        CChartInfo chart;
        chart.title = "Sums";
        chart.series.emplace_back().x = {1.0};
        chart.series.back().y = {tiny_.sum};
        return host.NewGeneralMultipleChartLongEx(chart) == 0;
    }
    Sums& tiny_;
};

inline int Sums::DoSpecify(CAnalysisSupport& analysis) {
    if (Of(analysis).failInStep) throw std::runtime_error("out of order");
    return CAnalysisModelessDialog::CreateAnalysisDialog(std::make_unique<SpecifyDlg>(Of(analysis))) ? -1 : 0;
}
inline int Sums::DoResults(CAnalysisSupport& analysis) {
    return CAnalysisModelessDialog::CreateAnalysisDialog(std::make_unique<ResultsDlg>(Of(analysis))) ? -1 : 0;
}

/// A data set of one variable "x" per list of cells.
inline korvana::DataSet DataOf(const std::vector<std::vector<double>>& variables) {
    korvana::DataSet data("folder/tiny.csv", static_cast<int>(variables.front().size()));
    for (std::size_t v = 0; v < variables.size(); ++v) {
        korvana::Variable variable;
        variable.name = std::string{"x"} + static_cast<char>('1' + v);
        korvana::test::addVariable(data, variable,
                                   [&](int i) { return variables[v][static_cast<std::size_t>(i)]; });
    }
    return data;
}

/// A session of the analysis over three cases of two variables, the second one without values.
struct TinySession : ::testing::Test {
    explicit TinySession(const korvana::SessionOptions& options = {})
        : analysis(new Sums), session(korvana::Analysis(analysis), options) {
        session.data().open(DataOf({{1, 2, 4}, {NAN, NAN, NAN}}));
    }
    void put(const char* property, const AutomationValue& value) {
        const auto answer = session.currentDialog()->Put(property, value);
        ASSERT_TRUE(answer.ok) << answer.detail;
    }
    void call(const char* action) {
        ASSERT_TRUE(session.currentDialog()) << action;
        session.currentDialog()->Call(action);
        session.pump();
    }
    /// Sums a variable, counted from 1.
    void specify(int variable) {
        put("Variables", AutomationValue::List(1, AutomationValue::List{variable}));
        call("OK");
    }
    std::string lastMessage() {
        return session.book().messages.empty() ? "" : session.book().messages.back().text;
    }

    Sums* analysis;
    korvana::Session session;
};

} // namespace tiny
