#include "apps/desktop/results/FileWriting.h"

#include <QCoreApplication>
#include <QThread>
#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "apps/desktop/BusyWait.h"
#include "host/charts/ChartRenderer.h"
#include "host/results/WritingWatch.h"

namespace korvana::desktop {
namespace {

/// A request to draw a chart, passed to the thread that draws and back.
struct Request {
    enum class State : std::uint8_t { Waits, Drawn, GivenUp };
    std::mutex mutex; ///< held while the chart is drawn: the asking thread waits for it
    std::condition_variable_any answered;
    State state = State::Waits;
    Picture picture;
};

/// The outcome of the thread.
struct Outcome {
    std::exception_ptr fault;
    bool stopped = false;
};

Outcome outcomeOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const WritingStopped&) {
        return {nullptr, true};
    } catch (const std::exception&) {
        return {std::current_exception(), false};
    }
    return {};
}

} // namespace

QString problemText(const std::exception_ptr& fault) {
    try {
        std::rethrow_exception(fault);
    } catch (const std::bad_alloc&) {
        return QCoreApplication::translate(
            "Results", "There is not enough memory to prepare the results. Close other programs, or export "
                       "the outputs one by one; tables as CSV need the least.");
    } catch (const std::exception& problem) {
        return QCoreApplication::translate(
                   "Results", "%1.\nChoose another folder or name, or free some space there, and "
                              "export again.")
            .arg(QString::fromStdString(problem.what()));
    }
}

Picture drawInWindowThread(const ozm::CChartInfo& info, PictureFormat format, const PictureOptions& options) {
    QCoreApplication* const application = QCoreApplication::instance();
    if (application == nullptr || application->thread() == QThread::currentThread())
        return renderChart(info, format, options);
    const auto request = std::make_shared<Request>();
    QMetaObject::invokeMethod(
        application,
        [request, &info, format, &options] {
            const std::lock_guard lock(request->mutex);
            if (request->state == Request::State::GivenUp) return; // and the references no longer hold
            request->picture = renderChart(info, format, options);
            request->state = Request::State::Drawn;
            request->answered.notify_all();
        },
        Qt::QueuedConnection);
    const WritingWatch* watch = WritingWatch::current();
    const auto drawn = [&] { return request->state == Request::State::Drawn; };
    std::unique_lock lock(request->mutex);
    if (!request->answered.wait(lock, watch == nullptr ? std::stop_token() : watch->stop(), drawn)) {
        request->state = Request::State::GivenUp;
        throw WritingStopped();
    }
    return std::move(request->picture);
}

Written writeFiles(QWidget* over, const std::function<void()>& work) {
    Outcome outcome;
    QObject window; // receives calls from the thread in this one
    std::jthread worker;
    BusyWait wait(over, QCoreApplication::translate("Results", "Export"),
                  QCoreApplication::translate("Results", "Preparing the results ..."),
                  [&worker] { worker.request_stop(); });
    const auto inWindow = [&window, &wait](auto call) {
        QMetaObject::invokeMethod(
            &window, [&wait, call] { call(wait); }, Qt::QueuedConnection);
    };
    const auto run = [&](std::stop_token stop) {
        const WritingWatch watch(std::move(stop), [&inWindow](const std::filesystem::path& target) {
            const QString name = QString::fromStdString(target.filename().string());
            inWindow([name](BusyWait& shown) {
                shown.setText(QCoreApplication::translate("Results", "Writing %1 ...").arg(name));
            });
        });
        outcome = outcomeOf(work);
        inWindow([](BusyWait& shown) { shown.end(); });
    };
    try {
        worker = std::jthread(run);
    } catch (const std::system_error&) { // no thread can be started: the window has to wait
        run(std::stop_token());
    }
    if (!wait.run()) worker.request_stop();
    if (worker.joinable()) worker.join();
    wait.closeIfWanted();
    return {outcome.fault ? problemText(outcome.fault) : QString{}, outcome.stopped};
}

} // namespace korvana::desktop
