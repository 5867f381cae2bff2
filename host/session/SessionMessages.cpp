#include "host/session/SessionMessages.h"

#include "support/ModuleResources.h"

namespace korvana {
namespace {

ResultMessage::Severity severityOf(ozm::MessageStyle style) {
    switch (style) {
    case ozm::MessageStyle::Warning:
        return ResultMessage::Severity::Warning;
    case ozm::MessageStyle::Error:
    case ozm::MessageStyle::Refusal:
        return ResultMessage::Severity::Error;
    case ozm::MessageStyle::Information:
    case ozm::MessageStyle::YesNo:
    case ozm::MessageStyle::Note:
        break;
    }
    return ResultMessage::Severity::Note;
}

} // namespace

std::string SessionMessages::GetResourceString(ozm::ModuleHandle module, int id) {
    return module != nullptr ? std::string{module->String(id)} : std::string{};
}

int SessionMessages::DspMessageBox(ozm::MessageStyle style, ozm::CAnalysisDialog* window, int id,
                                   std::string_view text, std::string_view detail) {
    if (style == ozm::MessageStyle::Note) {
        parts_.remark(detail.empty() ? std::string{text} : std::string{text}.append(" ").append(detail));
        return ozm::ButtonOk;
    }
    ResultMessage message{id, std::string{text}, std::string{detail}, severityOf(style)};
    if (style == ozm::MessageStyle::YesNo) return ask(message, window);
    // A person has read it once it is shown; a script finds it in the book.
    if (style != ozm::MessageStyle::Refusal || parts_.automation) parts_.note(message);
    return parts_.frontEnd->showMessage(message, window);
}

int SessionMessages::DisplayInstQuestion(ozm::ModuleHandle module, ozm::CAnalysisDialog* window, int id) {
    const ResultMessage question{id, GetResourceString(module, id), {}, ResultMessage::Severity::Note};
    return ask(question, window);
}

int SessionMessages::ask(const ResultMessage& question, ozm::CAnalysisDialog* window) {
    const bool yes = parts_.frontEnd->ask(question, window);
    parts_.origins.answered(yes);
    return yes ? ozm::ButtonYes : ozm::ButtonNo;
}

} // namespace korvana
