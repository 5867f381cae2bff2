#pragma once

#include <QStatusBar>
#include <QString>

#include <utility>

namespace korvana::desktop {

/// A hint in a status line, for as long as it applies. The message that was there before it comes back,
/// unless another one has been shown meanwhile.
class StatusHint {
public:
    explicit StatusHint(QStatusBar& line) : line_(line) {}

    /// An empty hint ends the one that is shown.
    void show(const QString& hint) {
        const QString old = std::exchange(hint_, hint);
        const bool stands = !old.isEmpty() && line_.currentMessage() == old;
        if (!stands) before_ = line_.currentMessage();
        if (stands || !hint.isEmpty()) line_.showMessage(hint.isEmpty() ? before_ : hint);
    }

private:
    QStatusBar& line_;
    QString hint_;
    QString before_;
};

} // namespace korvana::desktop
