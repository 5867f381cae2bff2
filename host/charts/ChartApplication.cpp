#include "host/charts/ChartApplication.h"

#include <QApplication>
#include <QDir>
#include <QStringList>
#include <QThread>
#include <array>
#include <clocale>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <string>

namespace korvana {
namespace {

std::mutex guard;
QApplication* own = nullptr; // never deleted: Qt's own statics may be gone by the time ours would be

void swallow(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/) {}

constexpr const char* nowhere = "/dev/null"; // no folder can be made in it

/// A variable of the environment, set for a while.
class Setting {
public:
    Setting(const char* name, const char* value) : name_(name) {
        if (const char* before = std::getenv(name)) before_ = before;
        ::setenv(name, value, 1);
    }
    ~Setting() {
        if (before_)
            ::setenv(name_, before_->c_str(), 1);
        else
            ::unsetenv(name_);
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

private:
    const char* name_;
    std::optional<std::string> before_;
};

/// Qt ends the program when it finds no platform plugin, so look first.
bool offscreenIsInstalled() {
    QStringList directories = QCoreApplication::libraryPaths();
    for (QString& directory : directories)
        directory += "/platforms";
    const QString given = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
    if (!given.isEmpty()) directories.prepend(given);
    for (const QString& directory : directories)
        if (!QDir(directory).entryList({"*qoffscreen*"}, QDir::Files).isEmpty()) return true;
    return false;
}

std::string create() {
    const QtMessageHandler before = qInstallMessageHandler(swallow);
    std::string problem;
    if (offscreenIsInstalled()) {
        static std::array<char, 8> name{"korvana"};
        static std::array<char, 10> option{"-platform"};
        static std::array<char, 10> platform{"offscreen"};
        static std::array<char*, 4> arguments{name.data(), option.data(), platform.data(), nullptr};
        static int count = 3;
        // Qt sets the C locale from the environment, which would change numbers written by other libraries.
        const char* current = std::setlocale(LC_ALL, nullptr);
        const std::string locale = current != nullptr ? current : "C";
        // Qt looks into the user's runtime folder when it starts, and creates it; failing that, one among the
        // temporary files. Either would stay behind.
        const Setting runtime("XDG_RUNTIME_DIR", nowhere);
        const Setting temporary("TMPDIR", nowhere);
        own = new QApplication(count, arguments.data());
        std::setlocale(LC_ALL, locale.c_str());
    } else {
        problem = "Qt's 'offscreen' platform plugin is not installed";
    }
    qInstallMessageHandler(before);
    return problem;
}

} // namespace

std::string ensureChartApplication() {
    const std::lock_guard lock(guard);
    const QCoreApplication* running = QCoreApplication::instance();
    if (running == nullptr) {
        if (std::string problem = create(); !problem.empty()) return problem;
        running = own;
    }
    if (qobject_cast<const QApplication*>(running) == nullptr)
        return "the program runs a Qt application without widgets; charts need a QApplication";
    if (running->thread() != QThread::currentThread()) {
        return "charts can only be drawn in the thread that drew the first one (with windows: the windows' "
               "thread)";
    }
    return {};
}

QuietQt::QuietQt() : quiet_(own != nullptr) {
    if (quiet_) qInstallMessageHandler(swallow);
}

QuietQt::~QuietQt() {
    if (quiet_) qInstallMessageHandler(nullptr);
}

} // namespace korvana
