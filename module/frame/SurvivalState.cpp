#include "module/frame/SurvivalState.h"

#include "module/resources/Resources.h"
#include "module/resources/Startup.h"
#include "module/survdata/SelectedVariables.h"

#include <algorithm>
#include <cctype>
#include <string>

namespace ozm::survival {
namespace {

constexpr std::size_t fileNameWidth = 40;

/// The data file's name in a field of 40 characters; a longer one is cut, but not inside a character.
std::string FileNameField(std::string name) {
    if (name.empty()) name = "noname";
    if (name.size() > fileNameWidth) {
        std::size_t end = fileNameWidth;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80U)
            --end;
        name.resize(end);
    }
    name.resize(std::max(name.size(), fileNameWidth), ' ');
    return name;
}

void ReadDataCounts(CAnalysisSupport& host, SharedSettings& shared) {
    shared.cases = host.ss_nb();
    shared.variables = host.NumberOfVariables();
    shared.fileName = FileNameField(host.FileName());
}

} // namespace

void SurvivalState::UnsetCodes() {
    shared.completeCode = shared.censoredCode = unsetCode;
    shared.groupCodes.clear();
    lifeTables.settings.ForgetEntering();
    twoSamples.settings = {};
    kSamples.settings = {};
    regression.ForgetData();
}

void SurvivalState::Reset(CAnalysisSupport& host) {
    ReleaseResults();
    shared = SharedSettings{};
    shared.releaseResults = [] { ModuleState().ReleaseResults(); };
    UnsetCodes();
    shared.owner = &host;
    lifeTables = {};
    if (host.IsOleAutomation()) kaplan.settings = {}; // a script is to get the same whatever went before
    regression = {};
    shared.reportTitle = Text(StrReportTitle);
    shared.reportTitleLower = shared.reportTitle;
    std::transform(shared.reportTitleLower.begin(), shared.reportTitleLower.end(),
                   shared.reportTitleLower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    ReadDataCounts(host, shared);
}

void SurvivalState::DataChanged(CAnalysisSupport& host) {
    shared.owner = &host;
    ReleaseResults();
    FindListsAgain(host, shared);
    UnsetCodes();
    ReadDataCounts(host, shared);
}

void SurvivalState::ClearSelections() {
    shared.timeVariables = 0;
    shared.lists = {};
    shared.listNames = {};
    UnsetCodes();
}

void SurvivalState::Leave(const CAnalysisSupport& host) {
    if (shared.owner != &host) return;
    ReleaseResults();
    shared.owner = nullptr;
}

void SurvivalState::ReleaseResults() {
    lifeTables.results.Release();
    kaplan.results.Release();
    twoSamples.results.Release();
    kSamples.results.Release();
    regression.results.Release();
}

SurvivalState& ModuleState() {
    static SurvivalState state;
    return state;
}

} // namespace ozm::survival
