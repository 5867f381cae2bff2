#pragma once

#include "host/session/SessionParts.h"
#include "support/services/MessageService.h"

namespace korvana {

/// Messages are recorded in the book, reported to the observers and shown by the front end; questions go to
/// the front end only, and notes to the book only.
class SessionMessages : public ozm::MessageService {
public:
    explicit SessionMessages(SessionParts& parts) : parts_(parts) {}

    std::string GetResourceString(ozm::ModuleHandle module, int id) override;
    int DspMessageBox(ozm::MessageStyle style, ozm::CAnalysisDialog* window, int id, std::string_view text,
                      std::string_view detail) override;
    int DisplayInstQuestion(ozm::ModuleHandle module, ozm::CAnalysisDialog* window, int id) override;

private:
    int ask(const ResultMessage& question, ozm::CAnalysisDialog* window);

    SessionParts& parts_;
};

} // namespace korvana
