#pragma once

#include "host/data/ReadData.h"

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;

namespace korvana::desktop {

/// Asks how a data file is to be read, where that cannot be detected: the separator between its cells, its
/// decimal mark, its first line and the order of its dates. Shows how the file begins.
class OpenOptionsDialog : public QDialog {
    Q_OBJECT

public:
    /// @param options  what is selected at first
    OpenOptionsDialog(const QString& path, const ReadOptions& options, QWidget* parent = nullptr);

    [[nodiscard]] ReadOptions options() const;

    void accept() override;

private:
    QComboBox* separator_;
    QLineEdit* sign_; ///< a separator that is not in the list
    QLabel* fault_;   ///< what is wrong with it
    QComboBox* decimal_;
    QComboBox* header_;
    QComboBox* dates_;
};

} // namespace korvana::desktop
