#pragma once
// An analysis with one dialog whose controls depend on each other, and a modal dialog.

#include "support/dialogs/CAnalysisModalDialog.h"
#include "tests/host/session/TinyAnalysis.h"

namespace form {

using namespace ozm;

enum Control {
    Mode = 201,
    Intervals,
    Width,
    Three,
    Share,
    Twice,
    TwiceAgain,
    Entries,
    Most,
    Starts,
    Places,
    Ask,
    Weightless
};

inline constexpr ChoiceTemplate two[] = {{.text = 11}, {.text = 12}};
inline constexpr ChoiceTemplate three[] = {{.text = 11}, {.text = 12}, {.text = 13}};
inline constexpr ControlTemplate controls[] = {
    {.id = Mode, .kind = ControlKind::RadioGroup, .text = "Intervals by", .choices = two},
    {.id = Intervals,
     .kind = ControlKind::Integer,
     .text = "&Number of intervals:",
     .range = {.least = 3, .greatest = 30}},
    {.id = Width,
     .kind = ControlKind::Real,
     .text = "&Step size:",
     .range = {.least = 0, .greatest = 1e7, .withLeast = false}},
    {.id = Three, .kind = ControlKind::RadioGroup, .text = "Three", .choices = three},
    {.id = Share,
     .kind = ControlKind::Real,
     .text = "Share:",
     .range = {.least = 0.00001,
               .greatest = 1,
               .withGreatest = false,
               .message = 14,
               .detail = 15,
               .resetTo = 0.5}},
    {.id = Twice, .text = "Twice"},
    {.id = TwiceAgain, .text = "Twice", .repeats = Twice},
    {.id = Entries, .kind = ControlKind::List, .text = "Entries", .choices = two},
    {.id = Ask, .text = "Ask"},
    {.id = Weightless, .text = "No weights"},
    {.id = ControlOk, .text = "OK"},
    {.id = ControlCancel, .text = "Cancel"},
};
inline constexpr ControlTemplate askControls[] = {
    {.id = Most,
     .kind = ControlKind::Integer,
     .text = "Most:",
     .range = {.least = 3, .greatest = 200, .resetTo = 50}},
    {.id = Starts, .kind = ControlKind::NumberList, .text = "Start values:"},
    {.id = Places, .kind = ControlKind::NumberList, .text = "Places:", .mayMiss = true},
    {.id = ControlOk, .text = "OK"},
};
inline constexpr DialogTemplate formTemplate{1, "Form", {}, controls};
inline constexpr DialogTemplate askTemplate{2, "Ask", {}, askControls};
inline constexpr AutomationMember members[] = {
    {"ByNumber", MemberKind::Property, MemberType::Boolean, Mode, "", "", 1},
    {"ByWidth", MemberKind::Property, MemberType::Boolean, Mode, "", "", 2},
    {"Number", MemberKind::Property, MemberType::Integer, Intervals, ""},
    {"Width", MemberKind::Property, MemberType::Real, Width, ""},
    {"First", MemberKind::Property, MemberType::Boolean, Three, "", "", 1},
    {"Second", MemberKind::Property, MemberType::Boolean, Three, "", "", 2},
    {"Third", MemberKind::Property, MemberType::Boolean, Three, "", "", 3},
    {"Share", MemberKind::Property, MemberType::Real, Share, ""},
    {"Ask", MemberKind::Action, MemberType::None, Ask, ""},
};
inline constexpr AutomationMember askMembers[] = {
    {"Most", MemberKind::Property, MemberType::Integer, Most, ""},
    {"Starts", MemberKind::Property, MemberType::Numbers, Starts, ""},
    {"Places", MemberKind::Property, MemberType::Numbers, Places, ""},
};
inline constexpr AutomationInterface formInterface{"Form", "CFormDlg", "", members};
inline constexpr AutomationInterface askInterface{"Ask", "CAskDlg", "", askMembers};
inline constexpr StringResource strings[] = {
    {11, "Number"}, {12, "Width"}, {13, "Neither"}, {14, "The share is none."}, {15, "It was %1."}};

class Forms final : public CAnalysisSupport {
public:
    Forms() {
        SetSequenceTable(table);
        resources_.strings = strings;
    }
    ModuleHandle GetLibInstance() override { return &resources_; }
    std::string GetAnalysisName() override { return "Forms"; }
    int answer = -2; ///< of the modal dialog
    bool takesWeights = true;

private:
    static int Open(CAnalysisSupport& analysis);
    static constexpr SEQFUNCTTBL table[] = {{1, &Open, 0}};
    ModuleResources resources_;
};

class AskDlg final : public CAnalysisModalDialog {
public:
    explicit AskDlg(CAnalysisSupport& analysis) : CAnalysisModalDialog(analysis, askTemplate) {
        AttachAutomation(askInterface);
    }

private:
    void OnOpen() override { SetValue(Most, 50); }
    bool OnCommand(int) override {
        if (!RangeHolds(Most)) return false;
        EndDialog(0);
        return true;
    }
};

class FormDlg final : public CAnalysisModelessDialog {
public:
    explicit FormDlg(Forms& analysis) : CAnalysisModelessDialog(analysis, formTemplate), own_(analysis) {
        AttachAutomation(formInterface);
    }
    using CAnalysisModelessDialog::Enable;
    using CAnalysisModelessDialog::RangeHolds;

private:
    void OnOpen() override { OnValueChanged(Mode); }
    void OnValueChanged(int control) override {
        if (control != Mode) return;
        Enable(Intervals, ValueAs<int>(Mode) == 1);
        Enable(Width, ValueAs<int>(Mode) == 2);
    }
    bool OnCommand(int control) override {
        if (control == Weightless || !own_.takesWeights) Analysis().TurnWeightsOff();
        if (control == Ask) own_.answer = AskDlg(own_).DoModal();
        if (control == ControlOk) ExitDialog(1, ExitMode::Forward);
        return true;
    }
    Forms& own_;
};

inline int Forms::Open(CAnalysisSupport& analysis) {
    auto dialog = std::make_unique<FormDlg>(static_cast<Forms&>(analysis));
    return CAnalysisModelessDialog::CreateAnalysisDialog(std::move(dialog)) ? -1 : 0;
}

/// The form, open in a session over three cases of x1 and x2.
struct Opened : ::testing::Test {
    explicit Opened(const korvana::SessionOptions& options = {})
        : analysis(new Forms), session(korvana::Analysis(analysis), options) {
        session.data().open(tiny::DataOf({{1, 2, 4}, {2, 2, 2}}));
        session.start();
    }
    FormDlg& dialog() { return static_cast<FormDlg&>(script().Dialog()); }
    AutomationObject script() { return *session.currentDialog(); }

    Forms* analysis;
    korvana::Session session;
};

} // namespace form
