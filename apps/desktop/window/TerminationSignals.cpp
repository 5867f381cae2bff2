#include "apps/desktop/window/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace korvana::desktop {
namespace {

constexpr std::array endingSignals{SIGTERM, SIGHUP, SIGINT};
std::array<int, 2> ends{-1, -1}; // of the pipe from the handler to the event loop

void tell(int number) {
    const int before = errno;
    const auto byte = static_cast<char>(number);
    [[maybe_unused]] const auto written = write(ends[1], &byte, 1); // a full pipe holds a signal already
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (pipe2(ends.data(), O_NONBLOCK | O_CLOEXEC) != 0) return; // signals then have their default effect
    notifier_ = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    connect(notifier_.get(), &QSocketNotifier::activated, this, [this] {
        char number = 0;
        while (read(ends[0], &number, 1) == 1)
            emit received(number);
    });
    struct sigaction action = {};
    action.sa_handler = &tell;
    action.sa_flags = SA_RESTART;
    for (const int number : endingSignals)
        sigaction(number, &action, nullptr);
}

TerminationSignals::~TerminationSignals() {
    if (notifier_ == nullptr) return;
    for (const int number : endingSignals)
        std::signal(number, SIG_DFL);
    notifier_.reset();
    for (int& end : ends)
        close(std::exchange(end, -1));
}

} // namespace korvana::desktop
