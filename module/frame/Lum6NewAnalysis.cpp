#include "module/frame/Lum6NewAnalysis.h"

#include "module/frame/CSurvival.h"

extern "C" ozm::CAnalysisSupport* Lum6NewAnalysis() {
    try {
        return new ozm::survival::CSurvival;
    } catch (...) {
        return nullptr;
    }
}
