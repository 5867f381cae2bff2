#pragma once

#include "host/session/FrontEnd.h"

#include <QString>

#include <optional>
#include <string>

class QWidget;

namespace korvana::desktop {

/// The file dialogs that an analysis asks for. They begin in the folder that the last one ended in, at first
/// in that of the data.
class FileChooser {
public:
    /// @param dataFile  the path of the data, which need not be a file
    std::optional<std::string> toOpen(const FrontEnd::FileRequest& request, const std::string& dataFile,
                                      QWidget* parent);
    /// A name without an ending gets that of the request. To replace a file must be confirmed.
    std::optional<std::string> toSave(const FrontEnd::FileRequest& request, const std::string& dataFile,
                                      QWidget* parent);

private:
    std::optional<std::string> choose(const FrontEnd::FileRequest& request, const std::string& dataFile,
                                      QWidget* parent, bool saves);
    QString folder_;
};

} // namespace korvana::desktop
