#include "tests/automation/Walk.h"

#include "support/ModuleResources.h"
#include "tests/support/MakeData.h"

#include <gtest/gtest.h>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace walk {
namespace {

using korvana::DataSet;
using korvana::ResultsBook;
using korvana::Variable;
using ozm::AutomationObject;
using ozm::AutomationResult;

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

} // namespace

const ozm::TypeLibrary& library() {
    static const korvana::Analysis analysis = korvana::loadAnalysis(korvana::findModules());
    return *analysis->GetLibInstance()->typeLibrary;
}

const ozm::AutomationInterface& interfaceOf(std::string_view name) {
    for (const auto& each : library().interfaces)
        if (each.name == name) return each;
    throw std::runtime_error("no interface " + std::string{name});
}

Walk::Walk(const Way& way, Visit visit) : way_(way), visit_(std::move(visit)) {
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

Walk::~Walk() {
    EXPECT_EQ(screen_.shown, 0) << way_.name;
}

std::string Walk::outcome() {
    std::string text;
    for (const std::string& name : seen)
        text += name + "\n";
    return text + inWords(session.book());
}

bool Walk::set(AutomationObject& dialog, const Settings& settings) {
    const std::string name = session.currentInterface();
    for (const auto& [member, value] : settings) {
        const AutomationResult answer = dialog.Put(member, value);
        EXPECT_TRUE(answer.ok) << way_.name << ": " << answer.error << ": " << answer.detail;
        session.pump();
        if (session.currentInterface() != name) return false;
    }
    return true;
}

bool Walk::fill(const std::string& name, AutomationObject& dialog) {
    for (const auto& [interface, settings] : way_.dialogs)
        if (interface == name && !set(dialog, settings)) return false;
    return true;
}

void Walk::operate(AutomationObject& modal) {
    seen.push_back(session.currentInterface());
    fill(seen.back(), modal);
    visit_(*this, modal);
}

const Way& wayOf(std::string_view name) {
    for (const Way& way : ways())
        if (way.name == name) return way;
    throw std::runtime_error("no way " + std::string{name});
}

} // namespace walk
