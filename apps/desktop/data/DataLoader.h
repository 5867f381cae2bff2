#pragma once

#include "host/data/ReadData.h"
#include "host/session/ActiveData.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

class QMimeData;
class QWidget;

namespace korvana::desktop {

/// Reads a data file in a separate thread. Signals are emitted in the thread of this object, exactly one for
/// each load.
class DataLoader : public QObject {
    Q_OBJECT

public:
    explicit DataLoader(QObject* parent = nullptr);
    ~DataLoader() override; ///< stops a load under way

    /// Starts to read. A load under way is stopped without a signal.
    void load(const QString& path, const ReadOptions& options = {});
    /// Asks the load under way to stop; cancelled() follows, unless it has just ended.
    void cancel();
    [[nodiscard]] bool isLoading() const { return loading_; }

    /// Waits without handling events; true when the load has ended (its signal is then queued).
    bool wait(int milliseconds);

    /// The data that were read; can be taken once, after loaded().
    [[nodiscard]] std::optional<DataSet> take();
    /// After failed(): the orders in which the file's dates can be read, if that is all that has to be
    /// decided; and whether the error is in the file's text, which other options may read differently.
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
    QString text;        ///< empty: it was read, or the user cancelled
    bool inText = false; ///< other options may be able to read it
};

/// Reads a file and makes it the active data, without selection or weights. For a file that takes longer, a
/// progress dialog with a Cancel button is shown over the parent, and the program keeps responding; not to be
/// called again before it returns. False when it was cancelled (the fault is then empty) or the file could
/// not be read; the previous data then stay. If the order of day, month and year in its dates is ambiguous,
/// the user is asked.
bool openDataFile(ActiveData& data, const QString& path, ReadFault* fault, QWidget* parent = nullptr,
                  ReadOptions options = {});

/// The filter of file dialogs for data files.
QString dataFileFilter();

/// The local files among what is dragged over the window.
QStringList droppedFiles(const QMimeData* mime);

} // namespace korvana::desktop
