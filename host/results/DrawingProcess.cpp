#include "host/results/DrawingProcess.h"

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

/// Some hundred times what a picture takes.
constexpr std::chrono::seconds kLongest{120};
constexpr std::size_t kBlock = std::size_t{1} << 16U;

/// What the process sends before the bytes of the picture or of the error.
struct Head {
    std::uint64_t size;
    bool drawn;
};

Picture failure(std::string why) {
    return {.bytes = {}, .error = std::move(why)};
}

/// Keeps signals away between fork and the moment at which the child has handlers of its own.
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

/// The program's handlers are not for this process, which has no files to tidy up and nothing to report; nor
/// should its end be seen on the terminal or leave a core file.
void becomeDrawer() {
    for (int signal = 1; signal < NSIG; ++signal)
        std::signal(signal, SIG_DFL); // refused for those that have no other
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nowhere, standard);
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

[[noreturn]] void drawAndSend(const std::function<Picture()>& draw, int pipe) {
    Picture picture;
    try {
        picture = draw();
    } catch (const std::bad_alloc&) {
        picture.error = kNoMemoryToDraw;
    } catch (...) {
        picture.error = "the drawing library failed";
    }
    const std::string& text = picture.drawn() ? picture.bytes : picture.error;
    const Head head{text.size(), picture.drawn()};
    std::array<char, sizeof head> bytes{};
    std::memcpy(bytes.data(), &head, sizeof head);
    const bool sent = sendAll(pipe, bytes.data(), bytes.size()) && sendAll(pipe, text.data(), text.size());
    ::_exit(sent ? 0 : 1); // nothing of the program is run down here: its files are not this process's
}

/// What comes through the pipe until its end; false when that takes too long.
bool receive(int pipe, std::string& all) {
    const auto end = std::chrono::steady_clock::now() + kLongest;
    std::array<char, kBlock> block{};
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
        if (left.count() <= 0) return false;
        pollfd wait{pipe, POLLIN, 0};
        const int ready = ::poll(&wait, 1, static_cast<int>(left.count()));
        if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
        const ssize_t size = ::read(pipe, block.data(), block.size());
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) return true;
        all.append(block.data(), static_cast<std::size_t>(size));
    }
}

/// The process, and this program's end of its pipe. Ends it where it still runs.
class Drawer {
public:
    Drawer(pid_t process, int pipe) : process_(process), pipe_(pipe) {}
    ~Drawer() {
        ::close(pipe_);
        if (process_ <= 0) return;
        ::kill(process_, SIGKILL);
        (void)end();
    }
    Drawer(const Drawer&) = delete;
    Drawer& operator=(const Drawer&) = delete;

    [[nodiscard]] int pipe() const { return pipe_; }

    /// Waits for its end and answers the signal that brought it about, 0 when none did.
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

Picture ended(int signal) {
    switch (signal) {
    case SIGINT:
    case SIGTERM:
    case SIGHUP:
        return failure("drawing was stopped");
    case 0:
        return failure(kNoMemoryToDraw);
    default:
        return failure(std::string(kNoMemoryToDraw) + ", it seems (the drawing library ended with '" +
                       ::strsignal(signal) + "')");
    }
}

Picture take(Drawer& drawer) {
    std::string all;
    if (!receive(drawer.pipe(), all)) return failure("drawing did not end within two minutes");
    const int signal = drawer.end();
    Head head{};
    if (all.size() < sizeof head) return ended(signal);
    std::memcpy(&head, all.data(), sizeof head);
    all.erase(0, sizeof head);
    if (all.size() != head.size) return ended(signal);
    return head.drawn ? Picture{std::move(all), {}} : failure(std::move(all));
}

} // namespace

std::optional<Picture> drawApart(const std::function<Picture()>& draw) {
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        return failure("cannot reach the process that draws: " + std::generic_category().message(errno));
    pid_t process = -1;
    {
        std::optional<SignalsBlocked> blocked(std::in_place);
        process = ::fork();
        if (process == 0) {
            ::close(pipe[0]);
            becomeDrawer();
            blocked.reset();
            drawAndSend(draw, pipe[1]);
        }
    }
    const int reason = errno;
    ::close(pipe[1]);
    if (process < 0) {
        ::close(pipe[0]);
        if (reason == EAGAIN) return std::nullopt;
        return failure("cannot start the process that draws: " + std::generic_category().message(reason));
    }
    Drawer drawer(process, pipe[0]);
    return take(drawer);
}

} // namespace korvana
