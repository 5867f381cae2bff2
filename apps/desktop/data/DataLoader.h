#pragma once

#include "host/data/ReadData.h"
#include "host/session/ActiveData.h"

#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

class QMimeData;
class QWidget;

namespace korvana::desktop {

/// Reads a data file in a thread of its own. Signals come in the thread of this object; after each load
/// exactly one of them.
class DataLoader : public QObject {
    Q_OBJECT

public:
    explicit DataLoader(QObject* parent = nullptr);
    ~DataLoader() override; ///< stops a load under way

    /// Begins to read. A load under way is stopped without a signal.
    void load(const QString& path, const ReadOptions& options = {});
    /// Asks the load under way to stop; cancelled() follows, unless it has just ended.
    void cancel();
    [[nodiscard]] bool isLoading() const { return loading_; }

    /// Waits without handling events; true when the load has ended (its signal is then on its way).
    bool wait(int milliseconds);

    /// The data read, once, after loaded().
    [[nodiscard]] std::optional<DataSet> take();
    /// After failed(): the orders in which the file's dates can be read, where that alone stands in the way;
    /// and whether the fault lies in the file's text, which other options may read otherwise.
    [[nodiscard]] const std::vector<DateOrder>& dateOrders() const { return dateOrders_; }
    [[nodiscard]] bool faultInText() const { return faultInText_; }

signals:
    void loaded();
    /// @param error  what is wrong, where, and what to do
    void failed(const QString& error);
    void cancelled();

private:
    struct Outcome;
    void finish(quint64 load);

    std::jthread worker_;
    std::shared_ptr<Outcome> outcome_;
    std::optional<DataSet> data_;
    std::vector<DateOrder> dateOrders_;
    bool faultInText_ = false;
    quint64 load_ = 0;
    bool loading_ = false;
};

/// Why a file was not read.
struct ReadFault {
    QString text;        ///< empty: it was read, or the user did not want to
    bool inText = false; ///< other options may read it
};

/// Reads a file and makes it the active data; selection and weights of the data before are forgotten. A file
/// that takes longer shows a busy sign with a Cancel button over the parent, and the program stays alive; not
/// to be called again before it answers. False when it was cancelled (the fault is then empty) or could not
/// be read; the data before then stays. Where the order of the parts of its dates is open, the user is asked.
bool openDataFile(ActiveData& data, const QString& path, ReadFault* fault, QWidget* parent = nullptr,
                  ReadOptions options = {});

/// The filter of a file dialog that asks for data.
QString dataFileFilter();

/// The first local file of what is dragged over the window; empty without one.
QString droppedFile(const QMimeData* mime);

} // namespace korvana::desktop
