#include "apps/desktop/data/DataLoader.h"

#include "apps/desktop/data/GridText.h"
#include "host/data/DataError.h"

#include <QFile>
#include <chrono>
#include <exception>
#include <filesystem>
#include <future>
#include <system_error>
#include <utility>

namespace korvana::desktop {

/// The outcome of the thread; read once `done` is ready.
struct DataLoader::Outcome {
    std::optional<DataSet> data;
    QString error;
    std::vector<DateOrder> dateOrders;
    bool faultInText = false;
    bool stopped = false;
    std::promise<void> promise;
    std::future<void> done = promise.get_future();
};

namespace {

std::filesystem::path toPath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace

DataLoader::DataLoader(QObject* parent) : QObject(parent) {}

DataLoader::~DataLoader() = default; // the thread is asked to stop and waited for

void DataLoader::load(const QString& path, const ReadOptions& options) {
    ++load_;
    worker_ = {}; // stops and waits for the one before
    data_.reset();
    loading_ = true;
    outcome_ = std::make_shared<Outcome>();
    auto read = [this, number = load_, file = toPath(path), options = options,
                 outcome = outcome_](std::stop_token stop) mutable {
        try {
            options.stop = std::move(stop);
            outcome->data = readData(file, options);
        } catch (const ReadingStopped&) {
            outcome->stopped = true;
        } catch (const AmbiguousDates& error) {
            outcome->error = readerText(error.what());
            outcome->dateOrders = error.orders();
        } catch (const DataError& error) {
            outcome->error = readerText(error.what());
            outcome->faultInText = error.line() > 0;
        } catch (const std::exception& error) {
            outcome->error = readerText(error.what());
        }
        outcome->promise.set_value();
        QMetaObject::invokeMethod(
            this, [this, number] { finish(number); }, Qt::QueuedConnection);
    };
    try {
        worker_ = std::jthread(read);
    } catch (const std::system_error&) { // no thread can be started: read here
        read(std::stop_token());
    }
}

void DataLoader::cancel() {
    worker_.request_stop();
}

bool DataLoader::wait(int milliseconds) {
    return !outcome_ ||
           outcome_->done.wait_for(std::chrono::milliseconds(milliseconds)) == std::future_status::ready;
}

std::optional<DataSet> DataLoader::take() {
    return std::exchange(data_, std::nullopt);
}

void DataLoader::finish(quint64 load) {
    if (load != load_ || !loading_) return;
    loading_ = false;
    const std::shared_ptr<Outcome> outcome = std::move(outcome_);
    data_ = std::move(outcome->data);
    dateOrders_ = std::move(outcome->dateOrders);
    faultInText_ = outcome->faultInText;
    if (outcome->stopped)
        emit cancelled();
    else if (data_)
        emit loaded();
    else
        emit failed(outcome->error);
}

} // namespace korvana::desktop
