#pragma once

#include "host/session/InitFile.h"
#include "host/session/SessionParts.h"
#include "support/services/FileService.h"

#include <functional>
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
    /// A failure to write is also recorded as a message with the reason. What is no initialisation file, or
    /// the file of the data, is not written to.
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
    /// Reads a pipe, which can be read only once. False: not possible, after a message.
    bool keepStream(const std::string& path);
    [[nodiscard]] std::optional<InitFile> fileAt(const std::string& path) const;
    /// Changes a file, and writes it where `change` returns true and has changed something. False, after a
    /// message unless `change` returned it: the file is as it was.
    bool edit(const std::string& path, const std::function<bool(InitFile&)>& change);

    struct Known {
        std::string path;
        InitFile file;
    };
    std::optional<Known> stream_;  ///< the pipe that was opened last
    std::optional<Known> written_; ///< last; has the encoding, also while the text does not show it
    SessionParts& parts_;
};

} // namespace korvana
