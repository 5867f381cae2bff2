#pragma once

#include "support/CAnalysisSupport.h"
#include "support/Export.h"

#include <string>

namespace ozm::survival {

/// The analysis object of the module. It adds no data of its own: what lives from one step to the next is
/// module-wide state. Step functions open their dialog and return -1, 0 when it could not be opened, or the
/// next step.
class KORVANA_SUPPORT CSurvival final : public CAnalysisSupport {
public:
    CSurvival();
    explicit CSurvival(CAnalysisDoc* document);
    ~CSurvival() override;
    CSurvival(const CSurvival&) = delete;
    CSurvival& operator=(const CSurvival&) = delete;

    int InitializeAfterFileChanged() override;
    void Initialize() override;
    unsigned char ForwardSequence(int fromStep, int toStep) override;
    ModuleHandle GetLibInstance() override;
    int GetAnalysisID() override; ///< always 3001
    std::string GetAnalysisName() override;

    /// Registers the shared work areas with the host and unsets the codes. Returns 1.
    int Init();

    static int StartAnalysis(CAnalysisSupport& analysis);
    static int SpecifyLifeTables(CAnalysisSupport& analysis);
    static int SpecifyKaplan(CAnalysisSupport& analysis);
    static int SpecifyTwoSamples(CAnalysisSupport& analysis);
    static int SpecifyKSamples(CAnalysisSupport& analysis);
    static int SpecifyRegression(CAnalysisSupport& analysis);
    static int LifeResults(CAnalysisSupport& analysis);
    static int KaplanResults(CAnalysisSupport& analysis);
    static int TwoResults(CAnalysisSupport& analysis);
    static int KsResults(CAnalysisSupport& analysis);
    static int RegSpec(CAnalysisSupport& analysis);
    static int RegressionResults(CAnalysisSupport& analysis);
    static int RegEst(CAnalysisSupport& analysis);
};

} // namespace ozm::survival
