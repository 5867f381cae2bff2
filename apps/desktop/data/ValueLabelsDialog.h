#pragma once

#include "host/data/Describe.h"
#include "host/data/Variable.h"

#include <QDialog>
#include <vector>

class QTableWidget;

namespace korvana::desktop {

class ErrorLine;

/// Edits the value labels of a variable of numbers or dates: one row per value, including those of the data
/// if they are few. OK is refused while a value cannot be read or is there twice. The dialog does not change
/// the data; valueLabels() returns the labels.
class ValueLabelsDialog : public QDialog {
    Q_OBJECT

public:
    /// @param counts  the counted values of the data; may be nullptr
    ValueLabelsDialog(Variable variable, const VariableSummary* counts, QWidget* parent = nullptr);

    /// Ascending by value; values without a label are left out.
    [[nodiscard]] const std::vector<ValueLabel>& valueLabels() const { return labels_; }

    void accept() override;

private:
    int addRow(const QString& value, const QString& label, const QString& cases);
    void addEmptyRow();
    void removeRows();
    void fault(int row, const QString& what);

    Variable variable_;
    std::vector<ValueLabel> labels_;
    QTableWidget* table_;
    ErrorLine* error_;
};

} // namespace korvana::desktop
