#pragma once

#include <string>

namespace korvana {

/// Charts are painted with Qt widgets, which need an application object. The first call of
/// `ensureChartApplication` makes one that needs no display, unless the program (a window) has its own; it
/// stays until the program ends. The program's C locale, environment and signal handling are left as they
/// were.
///
/// Returns an empty text when charts can be drawn in this thread, else the reason why not: no offscreen
/// platform installed, an application without widgets, or a thread other than the application's own.
[[nodiscard]] std::string ensureChartApplication();

/// While it lives, keeps Qt's warnings (run-time directory, character set) off standard error if the
/// application is ours; the program's own application is left alone.
class QuietQt {
public:
    QuietQt();
    ~QuietQt();
    QuietQt(const QuietQt&) = delete;
    QuietQt& operator=(const QuietQt&) = delete;

private:
    bool quiet_;
};

} // namespace korvana
