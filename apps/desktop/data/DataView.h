#pragma once

#include "host/session/ActiveData.h"

#include <QWidget>

class QLabel;
class QSpinBox;
class QTableView;
class QItemSelectionModel;

namespace korvana::desktop {

class WrappedLabel;
class CaseTableModel;

/// The cases as a grid: one row per case, one column per variable (with the case names, if any, first). Cells
/// are read from the data when they are painted; nothing is copied.
class DataView : public QWidget {
    Q_OBJECT

public:
    explicit DataView(QWidget* parent = nullptr);

    /// Shows data; nullptr shows nothing. The data must exist until the next call. To be called again, before
    /// events are handled, whenever another data set was opened, and after selection or weights changed.
    void setData(const ActiveData* active);

    /// Shows value labels instead of codes (the default).
    void setShowLabels(bool labels);
    [[nodiscard]] bool showLabels() const;

    /// Makes a case, counted from 1, the current one and scrolls to it. A number beyond the data means the
    /// last one.
    void goToCase(int case1);
    /// Scrolls to the variable that was added last.
    void showLastVariable();
    /// Sets the focus to the field that asks for a case. The key for it belongs to the window.
    void askForCase();

    /// The selected cells as they are shown, as tab-separated text.
    /// @param names  adds a first line with the names of the columns
    void copy(bool names = false);

    [[nodiscard]] QTableView* table() const { return table_; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void showState();
    void fitRows();
    void fitColumns();
    void say(const QString& text);

    CaseTableModel* model_;
    QTableView* table_;
    QItemSelectionModel* noSelection_ = nullptr;
    QLabel* nothing_; ///< in place of the table while there are no data
    WrappedLabel* state_;
    QLabel* caseLabel_;
    QSpinBox* case_;
    int generation_ = 0;
};

} // namespace korvana::desktop
