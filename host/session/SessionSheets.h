#pragma once

#include "host/session/SessionParts.h"
#include "support/services/SheetService.h"

namespace korvana {

/// Puts spreadsheets into the session's book. One with columns of different lengths is refused.
class SessionSheets : public ozm::SheetService {
public:
    explicit SessionSheets(SessionParts& parts) : parts_(parts) {}

    short table4(const ozm::SheetSpec& sheet) override;
    short looka4(const ozm::SheetSpec& sheet) override;
    short RenameColumn(int column, std::string_view heading1, std::string_view heading2) override;

private:
    SessionParts& parts_;
};

} // namespace korvana
