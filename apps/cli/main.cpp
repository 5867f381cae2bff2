#include "apps/cli/Run.h"
#include "host/results/Unfinished.h"

#include <csignal>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <iostream>
#include <new>
#include <string_view>
#include <sys/syscall.h>
#include <typeinfo>
#include <unistd.h>

namespace {

bool errIsTerminal = false;

void tell(std::string_view text) {
    // Nobody is left to be told that this failed.
    if (::write(STDERR_FILENO, text.data(), text.size()) < 0) return;
}

/// Whatever the program is doing, it ends at once and leaves no file half-made: the files of a run get their
/// names together, when all of them are whole.
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

/// A signal that the caller has the program ignore (nohup, a shell's "&") stays ignored.
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

std::terminate_handler usualEnd = nullptr;

/// Where nothing can catch: in the making of what is there before main().
[[noreturn]] void endUncaught() {
    const std::type_info* const type = abi::__cxa_current_exception_type();
    if (type != nullptr && *type == typeid(std::bad_alloc)) endWithoutMemory();
    usualEnd();
    std::abort();
}

/// Before all of the program's own objects.
[[gnu::constructor(101)]] void watchMemory() {
    usualEnd = std::set_terminate(endUncaught);
}

} // namespace

int main(int count, char** arguments) {
    std::ios::sync_with_stdio(false);
    errIsTerminal = ::isatty(STDERR_FILENO) == 1;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE})
        endOn(signal);
    // A limit to the size of files is an error of the write, like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    korvana::cli::Console own{std::cout, std::cerr, errIsTerminal};
    try {
        return korvana::cli::run({arguments + (count > 0 ? 1 : 0), arguments + count}, own);
    } catch (const std::bad_alloc&) { // there was not even room for the message
        endWithoutMemory();
    }
}
