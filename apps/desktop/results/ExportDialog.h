#pragma once

#include <QDialog>
#include <array>
#include <functional>
#include <utility>

#include "host/results/WriteBook.h"

class QCheckBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace korvana::desktop {

class ErrorLine;

/// What an export would do to existing files, for display.
struct FilesAtStake {
    QStringList replaced;
    QStringList removed; ///< files of an earlier run that the new one does not have
};

/// Asks where to write a run or all runs, and in which formats. The choice is remembered. It asks again
/// before files are replaced.
class ExportDialog : public QDialog {
    Q_OBJECT

public:
    ExportDialog(const QString& runTitle, int runs, QWidget* parent = nullptr);

    void chooseAllRuns();
    /// Finds out what the current choice would replace.
    void askBeforeReplacing(std::function<FilesAtStake(const ExportDialog&)> atStake) {
        atStake_ = std::move(atStake);
    }

    [[nodiscard]] bool allRuns() const;
    [[nodiscard]] FormatSet formats() const;
    [[nodiscard]] QString directory() const;

    void accept() override;

private:
    void showProblem(const QString& problem);
    bool mayReplace();

    QRadioButton* thisRun_;
    QRadioButton* allRuns_;
    std::array<QCheckBox*, outputFormatCount> formats_{};
    QLineEdit* directory_;
    ErrorLine* problem_;
    std::function<FilesAtStake(const ExportDialog&)> atStake_;
};

} // namespace korvana::desktop
