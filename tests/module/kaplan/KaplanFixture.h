#pragma once
// The Kaplan-Meier analysis on a fake host, from its specification dialog to its results.

#include "tests/module/AnalysisFixture.h"

namespace ozm::test {

class KaplanFixture : public AnalysisFixture {
protected:
    void SetUp() override {
        AnalysisFixture::SetUp();
        // The 6-MP group of Freireich et al. 1963, unsorted.
        host.columns = {
            {"weeks", {10, 6, 7, 6, 32, 6, 23, 22, 11, 16, 34, 32, 25, 10, 9, 6, 13, 20, 17, 19, 35}},
            {"relapse", {1, 1, 1, 0, 0, 1, 1, 1, 0, 1, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0}}};
    }
    using AnalysisFixture::Specify;
    int Specify() override {
        using List = AutomationValue::List;
        return Specify(2, List{List{"weeks"}, List{"relapse"}});
    }
    survival::KaplanState& State() { return survival::ModuleState().kaplan; }
};

} // namespace ozm::test
