#include "host/results/WorkApart.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace korvana {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 16U;

/// What the process sends before the bytes of the result or the error.
struct Head {
    std::uint64_t size;
    bool answered;
};

Answer failure(std::string why) {
    return {.bytes = {}, .error = std::move(why)};
}

/// Blocks signals between fork and the moment when the child has its own handlers.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_{};
};

/// Resets the program's signal handlers, as this process has no files to tidy up and nothing to report; its
/// end should not show on the terminal or leave a core file either. Returns the pipe, which in a program
/// without standard files may have the number of one.
int becomeWorker(int pipe) {
    pipe = ::fcntl(pipe, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    for (int signal = 1; signal < NSIG; ++signal)
        std::signal(signal, SIG_DFL); // fails for those that cannot be caught
    std::signal(SIGXFSZ, SIG_IGN);    // an error of the write
    prctl(PR_SET_PDEATHSIG, SIGTERM); // waits while signals are held back
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nowhere, standard);
    return pipe;
}

bool sendAll(int pipe, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(pipe, data, size);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        data += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

[[noreturn]] void workAndSend(const Work& work, const std::function<Answer()>& answer, int pipe) {
    Answer made;
    try {
        made = answer();
    } catch (const std::bad_alloc&) {
        made.error = work.noMemory;
    } catch (...) {
        made.error = std::string(work.name) + " failed";
    }
    const std::string& text = made.error.empty() ? made.bytes : made.error;
    const Head head{text.size(), made.error.empty()};
    std::array<char, sizeof head> bytes{};
    std::memcpy(bytes.data(), &head, sizeof head);
    const bool sent = sendAll(pipe, bytes.data(), bytes.size()) && sendAll(pipe, text.data(), text.size());
    ::_exit(sent ? 0 : 1); // no cleanup of the program here: its files are not this process's
}

/// Reads the pipe to its end; false when that takes too long.
bool receive(int pipe, const Work& work, std::string& all) {
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    std::array<char, blockSize> block{};
    for (;;) {
        int left = -1; // no end
        if (work.longest) {
            left = static_cast<int>(
                std::chrono::ceil<std::chrono::milliseconds>(begin + *work.longest - Clock::now()).count());
            if (left <= 0) return false;
        }
        pollfd wait{pipe, POLLIN, 0};
        const int ready = ::poll(&wait, 1, left);
        if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
        const ssize_t size = ::read(pipe, block.data(), block.size());
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) return true;
        all.append(block.data(), static_cast<std::size_t>(size));
    }
}

/// The process, and this program's end of its pipe. Ends the process if it still runs.
class Worker {
public:
    Worker(pid_t process, int pipe) : process_(process), pipe_(pipe) {}
    ~Worker() {
        ::close(pipe_);
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        (void)end();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    [[nodiscard]] int pipe() const { return pipe_; }

    /// Waits for its end and returns the signal that caused it, 0 if none did.
    int end() {
        int status = 0;
        while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {}
        process_ = -1;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    pid_t process_;
    int pipe_;
};

Answer ended(const Work& work, int signal) {
    switch (signal) {
    case SIGINT:
    case SIGTERM:
    case SIGHUP:
        return failure(std::string(work.name) + " was stopped");
    case 0:
        return failure(work.noMemory);
    default:
        return failure(std::string(work.noMemory) + ", it seems (" + work.name + " ended with '" +
                       ::strsignal(signal) + "')");
    }
}

Answer take(const Work& work, Worker& worker) {
    std::string all;
    if (!receive(worker.pipe(), work, all))
        return failure(std::string(work.name) + " did not end within " +
                       std::to_string(work.longest->count()) + " seconds");
    const int signal = worker.end();
    Head head{};
    if (all.size() < sizeof head) return ended(work, signal);
    std::memcpy(&head, all.data(), sizeof head);
    all.erase(0, sizeof head);
    if (all.size() != head.size) return ended(work, signal);
    return head.answered ? Answer{std::move(all), {}} : failure(std::move(all));
}

} // namespace

std::optional<Answer> workApart(const Work& work, const std::function<Answer()>& answer) {
    const auto unreachable = [&work](int reason) {
        if (reason == ENOMEM) return failure(work.noMemory);
        return failure(std::string("no process for ") + work.name + ": " +
                       std::generic_category().message(reason));
    };
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) return unreachable(errno);
    pid_t process = -1;
    int reason = 0;
    {
        std::optional<SignalsBlocked> blocked(std::in_place);
        process = ::fork();
        reason = errno;
        if (process == 0) {
            ::close(pipe[0]);
            const int answers = becomeWorker(pipe[1]);
            blocked.reset();
            workAndSend(work, answer, answers);
        }
    }
    ::close(pipe[1]);
    if (process < 0) {
        ::close(pipe[0]);
        if (reason == EAGAIN) return std::nullopt;
        return unreachable(reason);
    }
    Worker worker(process, pipe[0]);
    return take(work, worker);
}

} // namespace korvana
