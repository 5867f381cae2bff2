// What the port offers dialogs and scripts beyond plain controls.

#include "tests/host/session/FormDialog.h"

#include "host/results/OriginText.h"

#include <algorithm>
#include <limits>
#include <map>

namespace form {
namespace {

struct Watcher : DialogObserver {
    void ControlEnabled(CAnalysisDialog& dialog, int control) override {
        heard.emplace_back(control, dialog.IsEnabled(control));
    }
    std::vector<std::pair<int, bool>> heard;
};

struct PortTest : Opened {};

TEST_F(PortTest, WhatIsDisabledCannotBePressedAndTakesValuesInAnyOrder) {
    Watcher watcher;
    dialog().AddObserver(watcher);
    for (const ControlTemplate& control : controls) {
        if (control.repeats != 0) continue;
        const ControlValue before = dialog().Value(control.id);
        dialog().Enable(control.id, true);
        watcher.heard.clear();
        for (int twice = 0; twice < 2; ++twice)
            dialog().Enable(control.id, false);
        const std::size_t buttons = control.id == Twice ? 2 : 1;
        EXPECT_EQ(watcher.heard.size(), buttons) << control.text << ": told once of each";
        const DialogResult pressed = dialog().Press(control.id);
        EXPECT_FALSE(pressed.done);
        EXPECT_NE(pressed.reason.find("is disabled"), std::string::npos) << pressed.reason;
        EXPECT_EQ(dialog().Value(control.id), before);
        dialog().Enable(control.id, true);
        EXPECT_EQ(watcher.heard.back().second, true);
    }
    dialog().Enable(Twice, false);
    EXPECT_FALSE(dialog().Press(TwiceAgain).done) << "the same button once more";
    dialog().RemoveObserver(watcher);

    EXPECT_TRUE(script().Put("ByNumber", true).ok);
    EXPECT_FALSE(dialog().IsEnabled(Width));
    EXPECT_TRUE(script().Put("Width", 3.0).ok);
    EXPECT_TRUE(script().Put("ByNumber", false).ok);
    EXPECT_EQ(script().Get("Width").value, AutomationValue{3.0});
}

/// n units in the last place up (down for n < 0).
double Units(double x, int n) {
    for (; n > 0; --n)
        x = std::nextafter(x, std::numeric_limits<double>::infinity());
    for (; n < 0; ++n)
        x = std::nextafter(x, -std::numeric_limits<double>::infinity());
    return x;
}

TEST_F(PortTest, RangesHoldToFifteenUnitsAtTheirEnds) {
    const NumberRange closed{.least = 0.1, .greatest = 30};
    const NumberRange open{.least = 0.1, .greatest = 30, .withLeast = false, .withGreatest = false};
    for (const auto& [end, outwards] : {std::pair{0.1, -1}, std::pair{30.0, 1}}) {
        for (const int units : {0, 1, 15, 16, 1000}) {
            EXPECT_EQ(Contains(closed, Units(end, outwards * units)), units <= 15) << end << ' ' << units;
            EXPECT_FALSE(Contains(open, Units(end, outwards * units))) << end << ' ' << units;
            EXPECT_TRUE(Contains(closed, Units(end, -outwards * units)));
            EXPECT_EQ(Contains(open, Units(end, -outwards * units)), units > 15) << end << ' ' << units;
        }
    }
    for (const float wild : {NAN, INFINITY, -INFINITY}) {
        EXPECT_FALSE(Contains(closed, double{wild}));
        EXPECT_TRUE(Contains({}, double{wild})) << "no range, no limit";
    }
}

TEST_F(PortTest, ANumberOutOfRangeIsRefusedOrResetAsTheTemplateSays) {
    ASSERT_TRUE(script().Put("Number", 30).ok);
    for (const int wrong : {2, 31, -1, std::numeric_limits<int>::max()}) {
        const AutomationResult refused = script().Put("Number", wrong);
        EXPECT_EQ(refused.detail,
                  "'Number of intervals' takes numbers from 3 to 30, not " + std::to_string(wrong));
    }
    EXPECT_EQ(script().Get("Number").value, AutomationValue{30});
    script().Put("ByWidth", true);
    EXPECT_EQ(script().Put("Width", 0.0).detail,
              "'Step size' takes numbers above 0 and at most 10000000, not 0");
    EXPECT_TRUE(script().Put("Width", 1e-8).ok);

    EXPECT_TRUE(dialog().RangeHolds(Width));
    for (const double wrong : {0.0, 1.0, 1e-6}) {
        EXPECT_TRUE(script().Put("Share", wrong).ok) << "told when it is used";
        EXPECT_FALSE(dialog().RangeHolds(Share));
        EXPECT_EQ(session.book().messages.back().text, "The share is none.");
        EXPECT_EQ(session.book().messages.back().detail, "It was " + NumberInWords(wrong) + ".");
        EXPECT_EQ(script().Get("Share").value, AutomationValue{0.5});
        EXPECT_TRUE(dialog().RangeHolds(Share));
    }
}

TEST_F(PortTest, AChoiceOfARadioGroupIsAMemberOfItsOwn) {
    EXPECT_EQ(script().Get("ByNumber").value, AutomationValue{true});
    for (const auto& [member, on, byWidth] : {std::tuple{"ByWidth", true, true},
                                              {"ByNumber", false, true},
                                              {"ByNumber", true, false},
                                              {"ByWidth", false, false},
                                              {"ByNumber", false, true},
                                              {"ByWidth", false, false}}) {
        EXPECT_TRUE(script().Put(member, on).ok);
        EXPECT_EQ(script().Get("ByWidth").value, AutomationValue{byWidth}) << member << on;
        EXPECT_EQ(script().Get("ByNumber").value, AutomationValue{!byWidth}) << member << on;
    }
    EXPECT_TRUE(script().Put("Third", 1).ok) << "as from languages without truth values";
    EXPECT_TRUE(script().Put("First", false).ok) << "it is not chosen";
    EXPECT_EQ(script().Put("Third", false).detail,
              "'Third' is one of 3 choices: set the wanted one to true instead");
    EXPECT_EQ(script().Get("Third").value, AutomationValue{true});

    dialog().Press(ControlOk);
    session.pump();
    const auto& settings = session.run()->dialogs.back().settings;
    std::map<std::string, korvana::Setting> named;
    for (const korvana::Setting& setting : settings)
        named[setting.id] = setting;
    EXPECT_EQ(named.at("ByWidth").label, "Width");
    EXPECT_EQ(named.at("ByWidth").value, korvana::Setting::Value{false});
    EXPECT_EQ(named.at("Third").value, korvana::Setting::Value{true});
    EXPECT_TRUE(named.contains("Number"));
    EXPECT_FALSE(named.contains("Width")) << "greyed out, it did not count";
}

TEST_F(PortTest, NoMemberOfTheBaseInterfaceIsDecoration) {
    EXPECT_EQ(script().Get("Name").value, AutomationValue{"CFormDlg"});
    EXPECT_EQ(script().Get("Application").value, (AutomationReference{"Application", "Korvana"}));
    EXPECT_EQ(script().Get("Parent").value, (AutomationReference{"Analysis", "Forms"}));
    for (const AutomationMember& member : BaseDialogInterface().members) {
        if (member.kind != MemberKind::Property) continue;
        EXPECT_EQ(script().Put(member.name, "kept?").detail,
                  "'" + std::string{member.name} + "' can only be read");
    }
}

struct User : korvana::FrontEnd {
    void runModal(CAnalysisModalDialog& dialog) override {
        shown = session->currentInterface();
        if (closes) dialog.Press(ControlOk);
    }
    void dataUseChanged() override { ++dataUses; }
    korvana::Session* session = nullptr;
    std::string shown;
    bool closes = true;
    int dataUses = 0;
};

struct AskedUser : User, Opened {
    AskedUser() : Opened({.automation = false, .frontEnd = this}) { User::session = &(Opened::session); }
};

TEST_F(AskedUser, AModalDialogIsTheUsersAndTheCurrentOneMeanwhile) {
    script().Call("Ask");
    EXPECT_EQ(shown, "Ask");
    EXPECT_EQ(analysis->answer, 0);
    EXPECT_EQ(Opened::session.currentInterface(), "Form");
    closes = false;
    script().Call("Ask");
    EXPECT_EQ(analysis->answer, -1);
}

TEST_F(AskedUser, WeightsThatTheAnalysisTurnsOffAreOffForAll) {
    korvana::Session& running = Opened::session;
    running.data().weightBy("x2");
    running.start();
    EXPECT_EQ(running.book().notes.size(), 1U);
    dialog().Press(Weightless);
    EXPECT_EQ(analysis->WeightVariable(), 0);
    EXPECT_EQ(running.data().weightVariable(), 0);
    EXPECT_TRUE(running.book().notes.empty()) << "nothing is weighted any more";
    dialog().Press(Weightless);
    EXPECT_EQ(dataUses, 1) << "there was nothing to turn off";

    running.data().weightBy("x2");
    running.start();
    analysis->takesWeights = false;
    dialog().Press(ControlOk);
    running.pump();
    EXPECT_EQ(running.run()->data.weightVariable, "") << "the run that its OK began is not weighted";
    EXPECT_TRUE(running.book().notes.empty());
}

struct Script : Opened {
    Script() : Opened({.modalScript = [this](AutomationObject& modal) { doThis(modal); }}) {}
    std::function<void(AutomationObject&)> doThis = [](AutomationObject&) {};
};

TEST_F(Script, ReachesTheMembersOfAModalDialogThatIsNotShown) {
    dialog().Press(ControlOk);
    session.pump();
    doThis = [this](AutomationObject& modal) {
        EXPECT_EQ(session.currentInterface(), "Ask");
        EXPECT_EQ(modal.Get("Most").value, AutomationValue{50});
        EXPECT_TRUE(modal.Put("Most", 120).ok);
    };
    script().Call("Ask");
    EXPECT_EQ(analysis->answer, 0) << "its OK was pressed";
    const korvana::DialogSettings& asked = session.run()->dialogs.back();
    EXPECT_EQ(asked.id, "Ask") << "results are of its settings, too";
    EXPECT_EQ(asked.settings[0].value, korvana::Setting::Value{120});

    doThis = [](AutomationObject& modal) { modal.Put("Most", 1); };
    script().Call("Ask");
    EXPECT_EQ(analysis->answer, -1) << "what it does not accept stands open";
    EXPECT_EQ(session.currentInterface(), "Form");

    doThis = [](AutomationObject&) { throw std::runtime_error("no such thing"); };
    script().Call("Ask");
    EXPECT_EQ(analysis->answer, -1);
    EXPECT_THROW(session.pump(), std::runtime_error);
    session.pump(); // told once
}

TEST_F(Script, SetsListsOfNumbers) {
    using List = AutomationValue::List;
    doThis = [](AutomationObject& modal) {
        EXPECT_TRUE(modal.Put("Starts", List{0.1, -2}).ok);
        EXPECT_EQ(modal.Put("Starts", List{1, INFINITY}).detail,
                  "value 2 of 'Start values' is not a finite number");
        for (const AutomationValue& wrong :
             {AutomationValue{3.0}, AutomationValue{List{"1"}}, AutomationValue{List{NAN}}})
            EXPECT_FALSE(modal.Put("Starts", wrong).ok);
        EXPECT_EQ(modal.Get("Starts").value, (AutomationValue{List{0.1, -2.0}}));
        EXPECT_TRUE(modal.Put("Places", List{NAN, 60, {}}).ok) << "where numbers may miss";
    };
    dialog().Press(ControlOk);
    session.pump();
    script().Call("Ask");
    const auto lines = korvana::originLines(*session.run());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Start values: 0.1, -2"), lines.end());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "Places: ., 60, ."), lines.end());
}

TEST(Texts, AreCleanedBeforeTheyGoToAFile) {
    std::string text = "a=b=";
    CAnalysisSupport::Replace8CharGrow(text, '=', "==>");
    EXPECT_EQ(text, "a==>b==>") << "what was put in is not replaced again";
    CAnalysisSupport::Replace8CharGrow(text, '>', "");
    EXPECT_EQ(text, "a==b==");
    for (const auto& [given, plain] : {std::pair{"@L[3]Age@B[]", "Age"},
                                       {"a@b.org", "a@b.org"},
                                       {"@L[3", "@L[3"},
                                       {"@1[3]x", "@1[3]x"},
                                       {"x@", "x@"},
                                       {"a\nb\tc\x01", "a b c"},
                                       {"@L[@B[1]]", "]"},
                                       {"Zoë", "Zoë"}}) {
        text = given;
        CAnalysisSupport::StripFormatting(text);
        EXPECT_EQ(text, plain) << given;
    }
}

} // namespace
} // namespace form
