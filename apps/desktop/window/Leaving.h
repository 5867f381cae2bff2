#pragma once

class QString;
class QWidget;

namespace korvana::desktop {

class Workbook;

/// Asks before the window closes and takes results that were not exported, or edits of labels and codes, with
/// it. Save exports results; nothing keeps the edits. True when it may close.
[[nodiscard]] bool mayClose(QWidget& window, Workbook& workbook, bool labelsEdited);

/// Asks before other data take the place of those whose labels or codes were edited.
[[nodiscard]] bool mayReplaceData(QWidget& window, const QString& dataName, bool labelsEdited);

} // namespace korvana::desktop
