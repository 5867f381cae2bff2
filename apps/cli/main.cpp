#include "apps/cli/Run.h"
#include "host/results/StandardFiles.h"
#include "host/results/Unfinished.h"

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <new>
#include <string_view>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

bool errIsTerminal = false;

void tell(std::string_view text) {
    // There is no way left to report that this failed.
    if (::write(STDERR_FILENO, text.data(), text.size()) < 0) return;
}

/// Ends the program at once, at any moment, without leaving half a file: the files of a run get their names
/// together, when all of them are whole.
extern "C" void end(int signal) {
    const pid_t process = ::getpid();
    if (::syscall(SYS_gettid) != process) {
        // The thread that writes files must not go on meanwhile.
        ::syscall(SYS_tgkill, process, process, signal);
        return;
    }
    korvana::removeUnfinished();
    if (signal != SIGPIPE) tell(errIsTerminal ? "\r\033[Kkorvana: stopped\n" : "korvana: stopped\n");
    ::_exit(korvana::cli::ExitBySignal + signal);
}

/// A signal that the caller set to be ignored (nohup, a shell's "&") stays ignored.
void endOn(int signal) {
    struct sigaction action {};
    if (::sigaction(signal, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) return;
    action = {};
    action.sa_handler = end;
    ::sigfillset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

[[noreturn]] void endWithoutMemory() {
    korvana::removeUnfinished();
    tell("korvana: not enough memory\n");
    ::_exit(korvana::cli::ExitUsage);
}

/// The libraries and the program allocate some 200 KB before main(), where a failure could not be caught.
void requireRoom() {
    constexpr std::size_t bytes = std::size_t{512} << 10;
    void* const room = ::mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) endWithoutMemory(); // NOLINT: the system's own constant
    ::munmap(room, bytes);
}

/// Called by the loader before the libraries are initialised, so that their files do not take the standard
/// descriptors and the signal handlers are set. A signal in the few milliseconds before that ends the program
/// without a message; nothing has begun then.
void begin() {
    korvana::holdStandardFiles();
    errIsTerminal = ::isatty(STDERR_FILENO) == 1;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        endOn(signal);
    // A limit on file sizes is a write error, like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    requireRoom();
}

[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeAll)() = begin;

} // namespace

int main(int count, char** arguments) {
    std::ios::sync_with_stdio(false);
    korvana::cli::Console own{std::cout, std::cerr, errIsTerminal};
    try {
        return korvana::cli::run({arguments + (count > 0 ? 1 : 0), arguments + count}, own);
    } catch (const std::bad_alloc&) { // there was not even memory for the message
        endWithoutMemory();
    }
}
