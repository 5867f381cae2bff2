#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace korvana::desktop {

/// Turns SIGTERM, SIGHUP and SIGINT into a Qt signal; only one object of this class at a time.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    void received(int number);

private:
    std::unique_ptr<QSocketNotifier> notifier_;
};

} // namespace korvana::desktop
