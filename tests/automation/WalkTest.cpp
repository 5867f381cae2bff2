// A script walks through every dialog of the type library: no member is left out, and none is decoration.

#include "tests/automation/Walk.h"
#include "tests/automation/MemberChecks.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <unistd.h>

namespace walk {
namespace {

using korvana::ResultsBook;
using ozm::AutomationMember;
using ozm::AutomationObject;
using ozm::AutomationResult;
using ozm::MemberKind;
using ozm::MemberType;

std::string kindsOf(const ResultsBook& book) {
    return std::string(book.all<korvana::Report>().empty() ? "" : "R") +
           (book.all<korvana::Spreadsheet>().empty() ? "" : "S") +
           (book.all<korvana::Chart>().empty() ? "" : "C");
}

/// Numbers compare as numbers, whole or not.
AutomationValue plain(const AutomationValue& value) {
    if (const auto* whole = std::get_if<int>(&value.value)) return static_cast<double>(*whole);
    if (const auto* list = std::get_if<List>(&value.value)) {
        List all;
        for (const AutomationValue& each : *list)
            all.push_back(plain(each));
        return all;
    }
    return value;
}

/// A list in a list; in braces, compilers differ on whether the outer one is a copy of the inner one.
AutomationValue nested(const AutomationValue& value) {
    return List(1, List{value});
}

std::vector<AutomationValue> wrongFor(const AutomationMember& member) {
    switch (member.type) {
    case MemberType::Boolean:
        return {"yes", 0.5, List{}};
    case MemberType::Integer:
        return {"five", 2.5, 1e300, List{}};
    case MemberType::Real:
        return {"half", List{1}, AutomationValue{}};
    case MemberType::Text:
        return {1, List{"a"}, true};
    case MemberType::Code:
        return {"no such label", List{1}, true};
    case MemberType::Enumeration:
        return {0, 99, "scSurNone", List{}};
    case MemberType::Variables:
        return {1, List{1}, nested(99), nested("no such variable"), nested(1.5)};
    case MemberType::Codes:
        return {1, nested(1), List{AutomationValue{}}};
    case MemberType::Texts:
        return {"a", List{1}};
    case MemberType::Numbers:
        return {1, List{"a"}, List{true}};
    case MemberType::None:
    case MemberType::Object:
        break;
    }
    return {};
}

bool isIn(AutomationObject& dialog, std::string_view interface) {
    return dialog.Dialog().Interface()->name == interface;
}

TEST(Automation, EveryMemberOfTheLibraryHasACheck) {
    std::set<std::pair<std::string_view, std::string_view>> checked;
    for (const PropertyCheck& check : propertyChecks())
        EXPECT_TRUE(checked.emplace(check.interface, check.member).second) << check.member << " twice";
    for (const ActionCheck& check : actionChecks())
        EXPECT_TRUE(checked.emplace(check.interface, check.member).second) << check.member << " twice";
    checked.emplace("SurKaplanMeierResults", "DefaultPlot");
    std::size_t members = 0;
    for (const ozm::AutomationInterface& interface : library().interfaces)
        for (const AutomationMember& member : interface.members) {
            EXPECT_TRUE(checked.contains({interface.name, member.name}))
                << interface.name << '.' << member.name << " has no check";
            EXPECT_FALSE(member.help.empty()) << member.name;
            ++members;
        }
    EXPECT_EQ(checked.size(), members) << "checks of members that are not in the library";
}

TEST(Automation, EveryPropertyIsReadBackHasAnEffectAndRefusesWhatIsOfAnotherType) {
    for (const PropertyCheck& check : propertyChecks()) {
        SCOPED_TRACE(std::string{check.interface} + "." + std::string{check.member});
        const AutomationMember& member = *interfaceOf(check.interface).Find(check.member);
        std::string outcomes[2];
        for (const bool second : {false, true}) {
            const AutomationValue& value = second ? check.second : check.first;
            bool reached = false;
            Walk walk(wayOf(check.way), [&](Walk& on, AutomationObject& dialog) {
                if (isIn(dialog, check.interface) && !reached) {
                    reached = true;
                    on.set(dialog, check.with);
                    if (!on.set(dialog, {{check.member, value}})) return false; // it is in another form
                    const AutomationValue held = dialog.Get(check.member).value;
                    const bool byLabel =
                        std::holds_alternative<std::string>(value.value) && member.type == MemberType::Code;
                    const bool labels = check.member == "Codes" && value == AutomationValue{List{1, "C"}};
                    EXPECT_EQ(plain(held), plain(byLabel  ? AutomationValue{3}
                                                 : labels ? AutomationValue{List{1, 3}}
                                                          : value));
                    for (const AutomationValue& wrong : wrongFor(member)) {
                        const AutomationResult refused = dialog.Put(check.member, wrong);
                        EXPECT_FALSE(refused.ok);
                        EXPECT_EQ(refused.error, "Exception in analysis method: " +
                                                     std::string{dialog.Dialog().ClassName()} + "::put_" +
                                                     std::string{check.member});
                        EXPECT_FALSE(refused.detail.empty());
                        EXPECT_EQ(dialog.Get(check.member).value, held) << "nothing has changed";
                    }
                }
                if (dialog.Dialog().Template().Find(ozm::ControlOk) == nullptr)
                    dialog.Call(check.action.empty() ? wayOf(check.way).action : check.action);
                return false;
            });
            EXPECT_TRUE(reached);
            outcomes[second ? 1 : 0] = walk.outcome();
        }
        EXPECT_NE(outcomes[0], outcomes[1]) << "the member is decoration";
    }
}

TEST(Automation, EveryActionMakesItsOutput) {
    for (const ActionCheck& check : actionChecks()) {
        if (check.kinds.empty()) continue;
        bool reached = false;
        Walk walk(wayOf(check.way), [&](Walk& on, AutomationObject& dialog) {
            if (!isIn(dialog, check.interface)) return false;
            reached = true;
            const AutomationResult answer = dialog.Call(check.member);
            EXPECT_EQ(answer.value, AutomationValue{true}) << check.member << ": " << answer.detail;
            EXPECT_EQ(kindsOf(on.session.book()), check.kinds) << check.interface << '.' << check.member;
            EXPECT_FALSE(dialog.Get(check.member).ok) << "it has no value";
            EXPECT_FALSE(dialog.Put(check.member, 1).ok);
            return true;
        });
        EXPECT_TRUE(reached) << check.interface << '.' << check.member;
    }
}

/// Every call of every member is refused, for the dialog is closed.
void expectClosed(AutomationObject& dialog) {
    for (const ozm::AutomationInterface* interface :
         {&ozm::BaseDialogInterface(), dialog.Dialog().Interface()})
        for (const AutomationMember& member : interface->members) {
            const std::string name{member.name};
            const std::string error =
                "Exception in analysis method: " + std::string{dialog.Dialog().ClassName()} + "::";
            for (const auto& [answer, prefix] : {std::pair{dialog.Get(name), "get_"},
                                                 {dialog.Put(name, 1), "put_"},
                                                 {dialog.Call(name), ""}}) {
                EXPECT_FALSE(answer.ok) << name;
                EXPECT_EQ(answer.error, error + prefix + name);
                EXPECT_EQ(answer.detail, "the dialog has been closed") << name;
            }
        }
}

TEST(Automation, EveryDialogIsReachedHasTheBaseMembersAndIsShutOnceItIsClosed) {
    std::set<std::string_view> reached;
    for (const Way& way : ways()) {
        std::vector<AutomationObject> left;
        Walk walk(way, [&](Walk&, AutomationObject& dialog) {
            reached.insert(dialog.Dialog().Interface()->name);
            EXPECT_EQ(dialog.Get("Name").value, (AutomationValue{std::string{dialog.Dialog().ClassName()}}));
            EXPECT_EQ(dialog.Get("Application").value, (ozm::AutomationReference{"Application", "Korvana"}));
            EXPECT_EQ(dialog.Get("Parent").value,
                      (ozm::AutomationReference{"Analysis", "Survival Analysis"}));
            EXPECT_EQ(dialog.Put("Name", "x").detail, "'Name' can only be read");
            if (dialog.Dialog().Interface()->name == "SurRegressionEstimation" &&
                dialog.Dialog().ClassName() == "RegEstDlg") {
                dialog.Call("Cancel");
                expectClosed(dialog); // which is destroyed after this
            } else {
                left.push_back(dialog);
            }
            return false;
        });
        if (const auto last = walk.session.currentDialog();
            last && last->Dialog().Template().Find(ozm::ControlOk) == nullptr) {
            const std::string results = walk.session.currentInterface();
            EXPECT_EQ(walk.session.currentDialog()->Call("Cancel").value, AutomationValue{true});
            walk.session.pump();
            EXPECT_NE(walk.session.currentInterface(), results) << "it goes back";
        }
        for (AutomationObject& dialog : left)
            if (dialog.Dialog().IsClosed()) expectClosed(dialog);
        EXPECT_TRUE(std::ranges::any_of(left, [](const auto& each) { return each.Dialog().IsClosed(); }));
    }
    for (const ozm::AutomationInterface& interface : library().interfaces)
        EXPECT_TRUE(reached.contains(interface.name)) << interface.name << " is never reached";
}

TEST(Automation, ResultsOfEveryDialogAreRoutedAsItsMembersSay) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("korvana-automation-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "out.csv").string();
    for (const Way& way : ways())
        Walk(way, [&](Walk&, AutomationObject& dialog) {
            std::string_view action;
            for (const AutomationMember& member : dialog.Dialog().Interface()->members)
                if (action.empty() && member.kind == MemberKind::Action) action = member.name;
            const std::vector<std::pair<std::string_view, AutomationValue>> values{
                {"ResultsSelection", action.empty() ? List{} : List{std::string{action}}},
                {"ResultsSelectionOption", "exclude"},
                {"ResultsVariables", List{"group"}},
                {"ResultsOption", "book"},
                {"ResultsCodes", List{1, "A"}},
                {"ResultsSaveFileName", file},
                {"ResultsValues", "shown"},
                {"ResultsOutputFields", List{"time", "survival"}}};
            for (const AutomationMember& member : ozm::BaseDialogInterface().members) {
                if (member.kind != MemberKind::Routed) continue;
                const auto given = std::ranges::find(values, member.name,
                                                     &std::pair<std::string_view, AutomationValue>::first);
                if (given == values.end()) {
                    ADD_FAILURE() << member.name << " has no check";
                    continue;
                }
                const AutomationValue before = dialog.Get(member.name).value;
                EXPECT_TRUE(dialog.Put(member.name, given->second).ok) << member.name;
                EXPECT_EQ(dialog.Get(member.name).value, given->second) << member.name;
                for (const AutomationValue& wrong : wrongFor(member)) {
                    const AutomationResult refused = dialog.Put(member.name, wrong);
                    EXPECT_EQ(refused.error,
                              "Exception in analysis method: " + std::string{dialog.Dialog().ClassName()} +
                                  "::put_" + std::string{member.name});
                    EXPECT_FALSE(refused.detail.empty());
                }
                EXPECT_EQ(dialog.Get(member.name).value, given->second) << member.name;
                EXPECT_TRUE(dialog.Put(member.name, before).ok) << member.name;
            }
            return false;
        });

    // What they do in the end: of the table of results, rows of two cases, in two columns.
    const Walk walk(wayOf("kaplan"), [&](Walk&, AutomationObject& dialog) {
        if (!isIn(dialog, "SurKaplanMeierResults")) return false;
        dialog.Put("ResultsSaveFileName", file);
        dialog.Put("ResultsVariables", List{"time"});
        dialog.Put("ResultsCodes", List{34, 35});
        dialog.Put("ResultsOutputFields", List{"time", "censored"});
        EXPECT_TRUE(dialog.Call("Summary").ok);
        std::ifstream in(file);
        std::string text{std::istreambuf_iterator<char>(in), {}};
        EXPECT_EQ(std::ranges::count(text, '\n'), 3) << text;
        EXPECT_NE(text.find("34"), std::string::npos) << text;
        return true;
    });
    std::filesystem::remove_all(folder);
}

TEST(Automation, DefaultPlotNamesAnActionAndCannotBeSet) {
    Walk(wayOf("kaplan"), [&](Walk&, AutomationObject& dialog) {
        if (!isIn(dialog, "SurKaplanMeierResults")) return false;
        const AutomationResult plot = dialog.Get("DefaultPlot");
        EXPECT_EQ(dialog.Call(std::get<std::string>(plot.value.value)).value, AutomationValue{true});
        EXPECT_EQ(dialog.Put("DefaultPlot", "SurvivalCurve").detail, "'DefaultPlot' can only be read");
        return true;
    });
}

TEST(Automation, ALevelOutOfRangeIsResetNotRefused) {
    Walk(wayOf("kaplan"), [&](Walk& on, AutomationObject& dialog) {
        if (!isIn(dialog, "SurKaplanMeierResults")) return false;
        EXPECT_TRUE(dialog.Put("ConfidenceLevel", 1.5).ok);
        EXPECT_EQ(dialog.Call("SurvivalCurve").value, AutomationValue{false});
        EXPECT_EQ(dialog.Get("ConfidenceLevel").value, AutomationValue{0.95});
        EXPECT_EQ(on.session.book().messages.back().id, 20253);
        return true;
    });
}

TEST(Automation, TheEstimationHasItsDialogOnlyWhereItIsAskedFor) {
    for (const std::string_view way : {"cox", "asked"}) {
        const Walk walk(wayOf(way), [](Walk&, AutomationObject&) { return false; });
        const bool modal = std::ranges::count(walk.seen, "SurRegressionEstimation") > 0;
        EXPECT_EQ(modal, way == "asked");
        EXPECT_EQ(walk.seen.back(), "SurRegressionResults");
    }
}

TEST(Automation, ExpressionsAreSavedAndOpenedByTheNameOfAFile) {
    const auto file =
        std::filesystem::temp_directory_path() / ("korvana-expressions-" + std::to_string(getpid()) + ".ini");
    const Walk walk(wayOf("time"), [&](Walk& on, AutomationObject& dialog) {
        if (!isIn(dialog, "SurRegressionTimeDependent")) return false;
        EXPECT_EQ(dialog.Call("SaveExpressions").value, AutomationValue{false}) << "no file is named";
        on.session.nameFile(file);
        EXPECT_EQ(dialog.Call("SaveExpressions").value, AutomationValue{true});
        const AutomationValue names = dialog.Get("TimeDependentCovariateNames").value;
        dialog.Put("TimeDependentCovariateNames", List{});
        dialog.Put("TimeDependentCovariateExpressions", List{});
        on.session.nameFile(file);
        EXPECT_EQ(dialog.Call("OpenExpressions").value, AutomationValue{true});
        EXPECT_EQ(dialog.Get("TimeDependentCovariateNames").value, names);
        return true;
    });
    std::filesystem::remove(file);
}

} // namespace
} // namespace walk
