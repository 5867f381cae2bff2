#include "module/frame/CSurvival.h"

#include "module/frame/Steps.h"
#include "module/frame/SurvivalState.h"
#include "module/resources/Resources.h"
#include "module/resources/Startup.h"

#include <array>

namespace ozm::survival {

CSurvival::CSurvival() : CSurvival(nullptr) {}

CSurvival::CSurvival(CAnalysisDoc* document) : CAnalysisSupport(document) {
    SetSequenceTable(StepTable());
}

CSurvival::~CSurvival() {
    ModuleState().Leave(*this);
}

int CSurvival::InitializeAfterFileChanged() {
    return Init();
}

void CSurvival::Initialize() {
    ModuleState().Reset(*this);
}

unsigned char CSurvival::ForwardSequence(int fromStep, int toStep) {
    return CAnalysisSupport::ForwardSequence(fromStep, toStep);
}

ModuleHandle CSurvival::GetLibInstance() {
    return &Resources();
}

int CSurvival::GetAnalysisID() {
    return 3001;
}

std::string CSurvival::GetAnalysisName() {
    // Through the host, which may translate; directly where there is no host.
    std::string name = GetResourceString(StrAnalysisName);
    return name.empty() ? GetResourceStringDirect(StrAnalysisName) : name;
}

int CSurvival::Init() {
    SurvivalState& state = ModuleState();
    WorkAreas& work = state.shared.work;
    const std::array areas{WorkArea{work.values.data(), sizeof work.values},
                           WorkArea{work.missing.data(), sizeof work.missing},
                           WorkArea{work.variables.data(), sizeof work.variables},
                           WorkArea{work.counts.data(), sizeof work.counts},
                           WorkArea{work.statistics.data(), sizeof work.statistics}};
    InitCommons(areas);
    state.DataChanged(*this);
    return 1;
}

} // namespace ozm::survival
