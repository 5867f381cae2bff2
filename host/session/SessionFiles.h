#pragma once

#include "host/session/SessionParts.h"
#include "support/services/FileService.h"

#include <optional>
#include <string>

namespace korvana {

/// File dialogs are the front end's; initialisation files are read and replaced here.
class SessionFiles : public ozm::FileService {
public:
    explicit SessionFiles(SessionParts& parts) : parts_(parts) {}

    bool DoFileOpenDlg(std::string_view title, std::string_view defaultName, std::string_view extension,
                       std::string& path) override;
    bool DoFileSaveAsDlg(std::string_view title, std::string_view defaultName, std::string_view extension,
                         std::string& path) override;
    /// A failure to write is also recorded as a message with the reason.
    bool PutInitKeywordPrivate(const std::string& path, std::string_view section, std::string_view keyword,
                               std::string_view value) override;
    bool ClearInitSection(const std::string& path, std::string_view section) override;
    bool GetInitKeywordPrivate(const std::string& path, std::string_view section, std::string_view keyword,
                               std::string& value) override;
    bool EnumPrivateKeywords(const std::string& path, std::string_view section,
                             std::vector<std::string>& keywords) override;
    bool GetStartValues(std::span<const std::string> names, std::span<double> values) override;

private:
    enum class Purpose { Open, Save };
    /// The path that a person chooses or a script has named; nothing when cancelled.
    std::optional<std::string> choose(const FrontEnd::FileRequest& request, Purpose purpose);

    SessionParts& parts_;
};

} // namespace korvana
