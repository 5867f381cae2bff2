#pragma once

#include <QWidget>

class QVBoxLayout;

namespace korvana::desktop {

class RecentFiles;

/// The page shown while there are no data: a button that opens a file, and the files opened last.
class StartPage : public QWidget {
    Q_OBJECT

public:
    /// @param recent  must outlive the page
    explicit StartPage(const RecentFiles& recent, QWidget* parent = nullptr);

signals:
    void openRequested();
    void fileRequested(const QString& path);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void listFiles();

    const RecentFiles& recent_;
    QWidget* list_;
    QVBoxLayout* files_;
};

} // namespace korvana::desktop
