#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ozm {

/// Files that a dialog opens or saves, and initialisation files (sections of keywords with values, UTF-8).
class FileService {
public:
    virtual ~FileService() = default;

    /// Asks for a file to open or to save to; the path is written only when true is returned (false:
    /// cancelled).
    virtual bool DoFileOpenDlg(std::string_view title, std::string_view defaultName,
                               std::string_view extension, std::string& path) = 0;
    virtual bool DoFileSaveAsDlg(std::string_view title, std::string_view defaultName,
                                 std::string_view extension, std::string& path) = 0;

    /// Writes a keyword of a section, replacing its value or appending it; false when the file cannot be
    /// written.
    virtual bool PutInitKeywordPrivate(const std::string& path, std::string_view section,
                                       std::string_view keyword, std::string_view value) = 0;
    /// Removes the keywords of a section, so that those that are then written are all that it has; comments
    /// stay. True also when there is no such file or section; false when the file cannot be read or written.
    virtual bool ClearInitSection(const std::string& path, std::string_view section) = 0;
    /// Reads a keyword's value; false when there is none. Sections and keywords compare without regard to
    /// case.
    virtual bool GetInitKeywordPrivate(const std::string& path, std::string_view section,
                                       std::string_view keyword, std::string& value) = 0;
    /// Lists the keywords of a section in file order, repeated ones as often as they stand there; false when
    /// there is no such file or section.
    virtual bool EnumPrivateKeywords(const std::string& path, std::string_view section,
                                     std::vector<std::string>& keywords) = 0;

    /// Lets the user edit start values, one per name; false when cancelled (the values are then untouched).
    virtual bool GetStartValues(std::span<const std::string> names, std::span<double> values) = 0;
};

} // namespace ozm
