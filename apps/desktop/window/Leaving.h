#pragma once

#include <QStringList>

class QWidget;

namespace korvana::desktop {

class Workbook;

/// What was done to the data and no file keeps.
struct DataEdits {
    bool labels = false;  ///< labels or missing codes were edited
    QStringList computed; ///< names of variables
    [[nodiscard]] bool any() const { return labels || !computed.isEmpty(); }
};

/// Asks before the window closes and takes results that were not exported, or edits of the data, with it.
/// Save exports results; nothing keeps the edits. True when it may close.
[[nodiscard]] bool mayClose(QWidget& window, Workbook& workbook, const DataEdits& edits);

/// Asks before other data take the place of those that were edited.
[[nodiscard]] bool mayReplaceData(QWidget& window, const QString& dataName, const DataEdits& edits);

} // namespace korvana::desktop
