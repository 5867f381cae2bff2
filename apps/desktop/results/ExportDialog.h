#pragma once

#include <QDialog>
#include <array>

#include "host/results/WriteBook.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace korvana::desktop {

/// Where to write a run or all runs, and in which formats. The choice is remembered.
class ExportDialog : public QDialog {
    Q_OBJECT

public:
    ExportDialog(const QString& runTitle, int runs, QWidget* parent = nullptr);

    [[nodiscard]] bool allRuns() const;
    [[nodiscard]] FormatSet formats() const;
    [[nodiscard]] QString directory() const;

    void accept() override;

private:
    void showProblem(const QString& problem);

    QRadioButton* thisRun_;
    QRadioButton* allRuns_;
    std::array<QCheckBox*, kOutputFormats> formats_{};
    QLineEdit* directory_;
    QLabel* problem_;
};

} // namespace korvana::desktop
