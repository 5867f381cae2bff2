#pragma once

#include <QStringList>

class QWidget;

namespace korvana::desktop {

class Workbook;

/// Edits of the data that are saved in no file.
struct DataEdits {
    bool labels = false;  ///< labels or missing codes were edited
    QStringList computed; ///< names of variables
    [[nodiscard]] bool any() const { return labels || !computed.isEmpty(); }
};

/// Asks before the window closes if results that were not exported, or edits of the data, would be lost. Save
/// exports the results; edits cannot be saved. True when it may close.
[[nodiscard]] bool mayClose(QWidget& window, Workbook& workbook, const DataEdits& edits);

/// Asks before other data replace edited ones.
[[nodiscard]] bool mayReplaceData(QWidget& window, const QString& dataName, const DataEdits& edits);

} // namespace korvana::desktop
