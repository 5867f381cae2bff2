#include "support/CAnalysisSupport.h"

#include "support/services/NullServices.h"

#include <cstring>

namespace ozm {

CAnalysisSupport::CAnalysisSupport(CAnalysisDoc* document) {
    AttachDocument(document);
}

CAnalysisSupport::~CAnalysisSupport() = default;

void CAnalysisSupport::AttachDocument(CAnalysisDoc* document) {
    HostServices& host = document != nullptr ? document->Services() : NullServices();
    data_ = &host.Data();
    variables_ = &host.Variables();
    report_ = &host.Report();
    sheets_ = &host.Sheets();
    charts_ = &host.Charts();
    progress_ = &host.Progress();
    iterations_ = &progress_->Iterations();
    messages_ = &host.Messages();
    memory_ = &host.Memory();
    expressions_ = &host.Expressions();
    files_ = &host.Files();
    dialogs_ = &host.Dialogs();
}

int CAnalysisSupport::InitializeAfterFileChanged() {
    return 1;
}

void CAnalysisSupport::Initialize() {}

unsigned char CAnalysisSupport::ForwardSequence(int /*fromStep*/, int toStep) {
    for (const SEQFUNCTTBL& row : sequence_)
        if (row.step == toStep) return 1;
    return 0;
}

ModuleHandle CAnalysisSupport::GetLibInstance() {
    return nullptr;
}

int CAnalysisSupport::GetAnalysisID() {
    return 0;
}

std::string CAnalysisSupport::GetAnalysisName() {
    return {};
}

void CAnalysisSupport::InitCommons(std::span<const WorkArea> areas) {
    commons_.assign(areas.begin(), areas.end());
    for (const WorkArea& area : commons_)
        std::memset(area.address, 0, area.bytes);
}

int CAnalysisSupport::vvlcod(int variable, LabelLookup mode, std::string& text, float& value) {
    double wide = static_cast<double>(value);
    const int found = vvlcod8(variable, mode, text, wide);
    if (found != 0) value = static_cast<float>(wide);
    return found;
}

std::string CAnalysisSupport::GetResourceStringDirect(int id) {
    const ModuleHandle module = GetLibInstance();
    return module != nullptr ? std::string{module->String(id)} : std::string{};
}

int CAnalysisSupport::DspMessageBox(MessageStyle style, CAnalysisDialog* window, int id,
                                    std::string_view detail) {
    return DspMessageBox(style, window, id, GetResourceString(id), detail);
}

} // namespace ozm
