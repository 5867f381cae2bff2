// A script walks through every dialog of the type library: no member is left out, and none is decoration.

#include "host/session/Session.h"
#include "support/ModuleResources.h"
#include "tests/automation/MemberChecks.h"
#include "tests/support/MakeData.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <sstream>
#include <unistd.h>

namespace walk {
namespace {

using korvana::DataSet;
using korvana::ResultsBook;
using korvana::Session;
using korvana::Variable;
using ozm::AutomationMember;
using ozm::AutomationObject;
using ozm::AutomationResult;
using ozm::MemberKind;
using ozm::MemberType;

constexpr double none = std::numeric_limits<double>::quiet_NaN();

void add(DataSet& data, const char* name, const std::vector<double>& values) {
    Variable variable;
    variable.name = name;
    korvana::test::addVariable(data, std::move(variable),
                               [&](int i) { return values[static_cast<std::size_t>(i)]; });
}

/// The remissions of Freireich et al. 1963, with further variables made up for them.
DataSet patients() {
    const std::vector<double> weeks{10, 7,  32, 23, 22, 6, 16, 34, 32, 25, 11, 20, 19, 6,
                                    17, 35, 6,  13, 9,  6, 10, 1,  22, 3,  12, 8,  17, 2,
                                    11, 8,  12, 2,  5,  4, 15, 8,  23, 5,  11, 4,  1,  8};
    const std::vector<double> relapse{1, 1, 0, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 0,
                                      1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    std::vector<double> drug;
    std::vector<double> sex;
    std::vector<double> arm;
    std::vector<double> age;
    std::vector<double> days;
    for (int i = 0; i < 42; ++i) {
        drug.push_back(i < 21 ? 1 : 0);
        sex.push_back(1 + i / 2 % 2);
        arm.push_back(1 + i % 3);
        age.push_back(i % 14 == 5 ? none : 20 + i * 17 % 40);
        days.push_back(weeks[static_cast<std::size_t>(i)] * 7 + i * 5 % 11);
    }
    DataSet data("patients.csv", 42);
    add(data, "weeks", weeks);
    add(data, "relapse", relapse);
    add(data, "drug", drug);
    add(data, "sex", sex);
    Variable labelled;
    labelled.name = "arm";
    labelled.valueLabels = {{1.0, "A"}, {2.0, "B"}, {3.0, "C"}};
    korvana::test::addVariable(data, labelled, [&](int i) { return arm[static_cast<std::size_t>(i)]; });
    add(data, "age", age);
    add(data, "days", days);
    return data;
}

/// Men with angina pectoris, by the years since the diagnosis.
DataSet lifeTable() {
    DataSet data("table.csv", 16);
    add(data, "year", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
    add(data, "withdrawn", {0, 39, 22, 23, 24, 107, 133, 102, 68, 64, 45, 53, 33, 27, 23, 30});
    add(data, "died", {456, 226, 152, 171, 135, 125, 83, 74, 51, 42, 43, 34, 18, 0, 6, 0});
    return data;
}

/// All that results say.
std::string inWords(const ResultsBook& book) {
    std::ostringstream text;
    text.precision(17);
    for (const ResultsBook::Output& output : book.outputs) {
        if (const auto* report = std::get_if<korvana::Report>(&output)) {
            for (const std::string& line : report->lines)
                text << line << '\n';
        } else if (const auto* sheet = std::get_if<korvana::Spreadsheet>(&output)) {
            text << sheet->title << '\n';
            for (std::size_t row = 0; row < sheet->rowCount(); ++row) {
                text << sheet->rowHeading(row);
                for (std::size_t column = 0; column < sheet->columns.size(); ++column) {
                    const auto cell = sheet->cell(row, column);
                    text << ' ' << cell.number << ' ' << cell.integer << ' ' << cell.text;
                }
                text << '\n';
            }
        } else if (const auto* chart = std::get_if<korvana::Chart>(&output)) {
            text << chart->info.title << '\n';
            for (const auto& series : chart->info.series)
                for (std::size_t i = 0; i < series.y.size(); ++i)
                    text << (i < series.x.size() ? series.x[i] : 0.0) << ' ' << series.y[i] << '\n';
        }
    }
    for (const auto& message : book.messages)
        text << message.id << ' ' << message.text << message.detail << '\n';
    for (const std::string& line : book.iterations)
        text << line << '\n';
    return text.str();
}

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

/// Nothing is to be shown while a script drives the analysis.
struct Screen : korvana::FrontEnd {
    void runModal(ozm::CAnalysisModalDialog& /*dialog*/) override { ++shown; }
    int shown = 0;
};

const ozm::TypeLibrary& library() {
    static const korvana::Analysis analysis = korvana::loadAnalysis(korvana::findModules());
    return *analysis->GetLibInstance()->typeLibrary;
}

const ozm::AutomationInterface& interfaceOf(std::string_view name) {
    for (const auto& each : library().interfaces)
        if (each.name == name) return each;
    throw std::runtime_error("no interface " + std::string{name});
}

/// One way through an analysis.
class Walk {
public:
    /// What happens in a dialog once its members are set; true ends the walk there.
    using Visit = std::function<bool(Walk&, AutomationObject&)>;

    Walk(const Way& way, Visit visit) : way_(way), visit_(std::move(visit)) {
        session.data().open(way.table ? lifeTable() : patients());
        session.start();
        for (int dialogs = 0; dialogs < 10; ++dialogs) {
            const std::string name = session.currentInterface();
            if (name.empty()) return;
            AutomationObject dialog = *session.currentDialog();
            seen.push_back(name);
            if (!fill(name, dialog)) continue; // in another form
            if (visit_(*this, dialog) || dialog.Dialog().Template().Find(ozm::ControlOk) == nullptr) return;
            if (session.currentInterface() != name) { // it went to another form
                seen.push_back(session.currentInterface());
                return;
            }
            const AutomationResult ok = dialog.Call("OK");
            EXPECT_TRUE(ok.ok) << name << ": " << ok.detail;
            session.pump();
            if (session.currentInterface() == name) return; // refused, or its estimation was left
        }
        ADD_FAILURE() << way.name << " goes in circles";
    }
    ~Walk() { EXPECT_EQ(screen_.shown, 0) << way_.name; }
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    [[nodiscard]] std::string outcome() {
        std::string text;
        for (const std::string& name : seen)
            text += name + "\n";
        return text + inWords(session.book());
    }
    /// Sets members, and pumps, as some lead to another form. False when one did.
    bool set(AutomationObject& dialog, const Settings& settings) {
        const std::string name = session.currentInterface();
        for (const auto& [member, value] : settings) {
            const AutomationResult answer = dialog.Put(member, value);
            EXPECT_TRUE(answer.ok) << way_.name << ": " << answer.error << ": " << answer.detail;
            session.pump();
            if (session.currentInterface() != name) return false;
        }
        return true;
    }

    std::vector<std::string> seen;

private:
    bool fill(const std::string& name, AutomationObject& dialog) {
        for (const auto& [interface, settings] : way_.dialogs)
            if (interface == name && !set(dialog, settings)) return false;
        return true;
    }
    void operate(AutomationObject& modal) {
        seen.push_back(session.currentInterface());
        fill(seen.back(), modal);
        visit_(*this, modal);
    }

    const Way& way_;
    Visit visit_;
    Screen screen_;

public:
    Session session{
        korvana::loadAnalysis(korvana::findModules()),
        {.frontEnd = &screen_, .modalScript = [this](AutomationObject& modal) { operate(modal); }}};
};

const Way& wayOf(std::string_view name) {
    for (const Way& way : ways())
        if (way.name == name) return way;
    throw std::runtime_error("no way " + std::string{name});
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
