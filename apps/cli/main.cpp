#include "apps/cli/Run.h"

#include <csignal>
#include <cstdlib>
#include <iostream>
#include <unistd.h>

namespace {

korvana::StopSignals signals;
korvana::cli::Console* console = nullptr;

extern "C" void interrupt(int /*signal*/) {
    // The first time a computation is asked to stop; the second time nobody waits for it.
    if (!console->stopsItself || signals.has(korvana::StopSignals::External))
        _exit(korvana::cli::ExitStopped);
    signals.requestStop();
}

} // namespace

int main(int count, char** arguments) {
    std::ios::sync_with_stdio(false);
    korvana::cli::Console own{std::cout, std::cerr, isatty(STDERR_FILENO) == 1, signals};
    console = &own;
    std::signal(SIGINT, interrupt);
    return korvana::cli::run({arguments + (count > 0 ? 1 : 0), arguments + count}, own);
}
