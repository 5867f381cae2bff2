#pragma once
// What the tests of the analyses share: a fake host, the way from the startup dialog to a specification
// dialog, and the runs in which one thing after the other fails.

#include "module/frame/SurvivalState.h"
#include "module/resources/ControlIds.h"
#include "module/resources/StepNumbers.h"
#include "module/resources/StringIds.h"
#include "tests/module/FailingNew.h"
#include "tests/module/FakeHost.h"

#include <cctype>
#include <functional>
#include <gtest/gtest.h>
#include <set>

namespace ozm::test {

class AnalysisFixture : public testing::Test {
protected:
    FakeHost host;
    survival::CSurvival analysis{&host};

    void SetUp() override { analysis.Initialize(); }
    /// To the specification dialog with the selections made; answers its step.
    virtual int Specify() = 0;
    /// From there to the step after OK.
    int Run() {
        Specify();
        return host.Press(analysis, ControlOk);
    }
    /// From the startup dialog to the specification dialog of an analysis, with variables (a list per role)
    /// and codes 1 and 0.
    int Specify(int typeOfAnalysis, const AutomationValue& variables) {
        host.Go(analysis, survival::StepInitialize);
        host.Script().Put("TypeOfAnalysis", typeOfAnalysis);
        const int step = host.Press(analysis, ControlOk);
        AutomationObject script = host.Script();
        script.Put("Variables", variables);
        script.Put("CodeForCompleteResponses", 1);
        script.Put("CodeForCensoredResponses", 0);
        return step;
    }

    /// Presses every button of the results dialog that scripts know.
    void MakeEveryOutput() {
        for (const AutomationMember& member : host.Dialog().Interface()->members)
            if (member.kind == MemberKind::Action) {
                EXPECT_TRUE(host.Script().Call(member.name).ok) << member.name;
            }
    }
    /// An output that fails is told once, by its name; the dialog lives on.
    void EachFailingOutputIsNamed(int specification) {
        host.failCharts = host.failSheets = true;
        for (const AutomationMember& member : host.Dialog().Interface()->members) {
            if (member.kind != MemberKind::Action) continue;
            host.messages.clear();
            EXPECT_TRUE(host.Script().Call(member.name).ok) << member.name;
            ASSERT_EQ(host.messages.size(), 1U) << member.name;
            const Shown& told = host.messages[0];
            EXPECT_TRUE(told.id == survival::StrSpreadsheetFailed || told.id == survival::StrGraphicsError);
            EXPECT_NE(told.detail.find("(" + std::string(member.name) + ")."), std::string::npos)
                << told.detail;
        }
        EXPECT_EQ(host.Press(analysis, ControlCancel), specification);
    }
    /// Every column of every spreadsheet made has a name for programs, a word in lowerCamelCase that no other
    /// column of its spreadsheet has.
    void ColumnsAreNamed() const {
        EXPECT_FALSE(host.sheets.empty());
        for (const Sheet& sheet : host.sheets) {
            for (const std::string& id : sheet.ids) {
                const auto isOf = [](unsigned char c) { return std::isalnum(c) != 0; };
                EXPECT_TRUE(!id.empty() && std::islower(static_cast<unsigned char>(id[0])) != 0 &&
                            std::all_of(id.begin(), id.end(), isOf))
                    << sheet.title << ": '" << id << "'";
            }
            const std::set<std::string> different(sheet.ids.begin(), sheet.ids.end());
            EXPECT_EQ(different.size(), sheet.ids.size()) << sheet.title;
        }
    }

    /// What spoils a run, and the message that it then shows; 0: none.
    struct Spoilt {
        const char* name;
        std::function<void()> spoil;
        int message;
    };
    /// Each of them shows its message, goes back to the specification dialog and keeps nothing.
    void EachKeepsNothing(std::initializer_list<Spoilt> rows, int specification,
                          const std::function<int()>& observationsKept) {
        for (const Spoilt& row : rows) {
            host.messages.clear();
            Specify();
            row.spoil();
            EXPECT_EQ(host.Press(analysis, ControlOk), specification) << row.name;
            EXPECT_EQ(host.messages.empty() ? 0 : host.messages.back().id, row.message) << row.name;
            EXPECT_EQ(observationsKept(), 0) << row.name;
            EXPECT_EQ(host.outstanding, 0) << row.name;
        }
    }

    /// Runs `whole` with every memory request refused in turn, and `told` after each that was. Nothing may be
    /// outstanding then. Answers how many were refused.
    template <class Whole, class Told>
    int RefuseEveryRequest(Whole whole, Told told) {
        for (int n = 1; n < 1000; ++n) {
            host.messages.clear();
            host.sheets.clear();
            host.report.clear();
            host.requests = 0;
            host.refuseRequest = n;
            whole();
            EXPECT_EQ(host.outstanding, 0) << "request " << n;
            if (host.requests < n) {
                host.refuseRequest = 0;
                return n - 1;
            }
            SCOPED_TRACE("request " + std::to_string(n));
            told();
        }
        ADD_FAILURE() << "no end of requests";
        return 0;
    }

    /// Presses a button with every allocation of the C++ runtime failing in turn, and `after` after each that
    /// did, until it comes through. The step that the dialog then names stands in `host.nextStep`, not gone
    /// to yet.
    template <class After>
    void FailEveryAllocation(int button, After after) {
        for (long n = 1; n < 5000; ++n) {
            host.nextStep = -1;
            failingNew = n;
            host.Dialog().Press(button);
            const bool through = failingNew > 0;
            failingNew = 0;
            if (through) return;
            SCOPED_TRACE("button " + std::to_string(button) + ", allocation " + std::to_string(n));
            after();
        }
        ADD_FAILURE() << "no end of allocations";
    }
    /// OK of the specification dialog, likewise: nothing is outstanding after a failure, unless it struck the
    /// host after the run. Ends at the results.
    void FailEveryAllocationOfTheRun(int results, const std::function<int()>& outstandingAfterRun) {
        const auto atResults = [&] { return host.Dialog().Template().number == results; };
        FailEveryAllocation(ControlOk, [&] {
            EXPECT_EQ(host.outstanding, outstandingAfterRun());
            if (host.nextStep > 0) host.Go(analysis, host.nextStep);
            if (atResults()) host.Press(analysis, ControlCancel);
            EXPECT_EQ(host.outstanding, 0);
        });
        host.Go(analysis, host.nextStep);
        ASSERT_TRUE(atResults());
    }
};

} // namespace ozm::test
