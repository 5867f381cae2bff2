#pragma once
// The Kaplan-Meier analysis on a fake host, from its specification dialog to its results.

#include "module/frame/SurvivalState.h"
#include "module/resources/ControlIds.h"
#include "module/resources/StepNumbers.h"
#include "tests/module/FakeHost.h"

#include <gtest/gtest.h>

namespace ozm::test {

class KaplanFixture : public testing::Test {
protected:
    FakeHost host;
    survival::CSurvival analysis{&host};

    void SetUp() override {
        analysis.Initialize();
        // The 6-MP group of Freireich et al. 1963, unsorted.
        host.columns = {
            {"weeks", {10, 6, 7, 6, 32, 6, 23, 22, 11, 16, 34, 32, 25, 10, 9, 6, 13, 20, 17, 19, 35}},
            {"relapse", {1, 1, 1, 0, 0, 1, 1, 1, 0, 1, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0}}};
    }
    /// To the specification dialog with the selections made.
    int Specify() {
        host.Go(analysis, survival::StepInitialize);
        host.Script().Put("TypeOfAnalysis", 2);
        const int step = host.Press(analysis, ControlOk);
        AutomationObject script = host.Script();
        script.Put("Variables",
                   AutomationValue::List{AutomationValue::List{"weeks"}, AutomationValue::List{"relapse"}});
        script.Put("CodeForCompleteResponses", 1);
        script.Put("CodeForCensoredResponses", 0);
        return step;
    }
    /// From there to the step after OK.
    int Run() {
        Specify();
        return host.Press(analysis, ControlOk);
    }
    survival::KaplanState& State() { return survival::ModuleState().kaplan; }
};

} // namespace ozm::test
