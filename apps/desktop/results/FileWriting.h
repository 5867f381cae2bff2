#pragma once

#include <QString>
#include <exception>
#include <functional>

#include "host/results/ChartDrawing.h"

class QWidget;

namespace korvana::desktop {

/// How the writing of files ended.
struct Written {
    QString problem{};    ///< what went wrong, and what to do
    bool stopped = false; ///< by the user, or as the program ends; no file is left then
    [[nodiscard]] bool done() const { return problem.isEmpty() && !stopped; }
};

/// What went wrong while results were prepared, and what to do.
[[nodiscard]] QString problemText(const std::exception_ptr& fault);

/// Calls `work`, which writes files and uses no widgets, in a separate thread and waits for it. Meanwhile a
/// progress dialog over the widget says which file is being written and offers to stop. A request to close
/// the window stops it as well, and the window then closes.
[[nodiscard]] Written writeFiles(QWidget* over, const std::function<void()>& work);

/// Draws a chart in the window's thread, on behalf of any thread. Throws WritingStopped when writing is to
/// stop before drawing has begun.
[[nodiscard]] Picture drawInWindowThread(const ozm::CChartInfo& info, PictureFormat format,
                                         const PictureOptions& options);

} // namespace korvana::desktop
