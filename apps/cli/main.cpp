#include "apps/cli/Run.h"
#include "host/results/StandardFiles.h"
#include "host/results/Unfinished.h"

#include <array>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <new>
#include <string_view>
#include <sys/mman.h>
#include <sys/resource.h>
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

/// More than any analysis takes of the main thread's stack (160 KB was the most).
constexpr std::size_t stackBytes = std::size_t{512} << 10;

/// The libraries and the program allocate some 200 KB before main(), where a failure could not be caught.
void requireRoom() {
    constexpr std::size_t bytes = (std::size_t{512} << 10) + stackBytes;
    void* const room = ::mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (room == MAP_FAILED) endWithoutMemory(); // NOLINT: the system's own constant
    ::munmap(room, bytes);
}

/// The system lets the stack grow when it is used, and never shrinks it. When memory is used up it cannot
/// grow, which is a fault that nobody can catch; so it grows now. A smaller `ulimit -s` stays as it is.
[[gnu::noinline, gnu::no_sanitize_address]] void growStack() {
    rlimit most{};
    if (::getrlimit(RLIMIT_STACK, &most) != 0 || most.rlim_cur < 2 * stackBytes) return;
    constexpr std::size_t page = 4096;
    std::array<char, stackBytes> stack; // NOLINT: to clear it all would take time
    volatile char* const bytes = stack.data();
    for (std::size_t at = 0; at < stackBytes; at += page)
        bytes[at] = 0;
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
    growStack();
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
