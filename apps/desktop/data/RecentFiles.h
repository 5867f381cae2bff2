#pragma once

#include <QSettings>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>

class QMenu;

namespace korvana::desktop {

/// The data files opened last, newest first, remembered from one start of the program to the next.
class RecentFiles {
public:
    static constexpr int most = 10;

    /// @param settingsFile  where they are remembered; empty: with the user's settings of the program
    explicit RecentFiles(const QString& settingsFile = {});

    [[nodiscard]] QStringList files() const;
    /// Puts a file first, by its absolute path.
    void add(const QString& path);
    void remove(const QString& path);
    void clear();

    /// Refills a menu: one entry per file, and one that clears the list. Call it when the menu is about to
    /// show. This object must outlive the menu's entries.
    void fill(QMenu& menu, const std::function<void(const QString& path)>& open);

private:
    void store(const QStringList& files);

    std::unique_ptr<QSettings> settings_;
};

} // namespace korvana::desktop
