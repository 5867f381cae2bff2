#pragma once

#include <QIcon>

class QWidget;

namespace korvana::desktop {

enum class OutputIcon { Run, Report, Table, Chart };

/// A small icon in the text colour of the widget, visible in any theme.
[[nodiscard]] QIcon outputIcon(OutputIcon kind, const QWidget& widget);

} // namespace korvana::desktop
