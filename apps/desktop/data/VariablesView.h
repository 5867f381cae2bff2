#pragma once

#include "host/session/ActiveData.h"

#include <QWidget>

class QTableView;

namespace korvana::desktop {

class WrappedLabel;
class VariableTableModel;

/// What is known about the variables, one per row. Valid, missing and distinct values are counted over the
/// selected cases, in small pieces while the view is visible and the program is idle.
class VariablesView : public QWidget {
    Q_OBJECT

public:
    explicit VariablesView(QWidget* parent = nullptr);

    /// Shows data; nullptr shows nothing. As for DataView::setData.
    void setData(ActiveData* active);

    /// Whether labels and missing codes may be edited (the default); not while an analysis runs.
    void setEditable(bool editable);

    /// Opens the value labels of a variable, counted from 0, for editing.
    void editValueLabels(int variable0);

    /// Removes a computed variable from the data, or says why it cannot be removed.
    void removeVariable(int variable0);

    [[nodiscard]] QTableView* table() const { return table_; }

signals:
    /// Emitted before variablesChanged, unless a variable was removed.
    void labelsEdited();
    /// A label, a missing code or value labels were edited, or a variable was removed. A selection that
    /// depends on them was repeated.
    void variablesChanged();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void fitRows();
    void fitColumns();
    void say(const QString& text);

    VariableTableModel* model_;
    QTableView* table_;
    WrappedLabel* message_;
    int generation_ = 0;
};

} // namespace korvana::desktop
