#pragma once

#include <QIcon>

class QWidget;

namespace korvana::desktop {

enum class OutputIcon { Run, Report, Table, Chart };

/// A small drawing in the text colour of the widget, so that it is seen in any theme.
[[nodiscard]] QIcon outputIcon(OutputIcon kind, const QWidget& widget);

} // namespace korvana::desktop
