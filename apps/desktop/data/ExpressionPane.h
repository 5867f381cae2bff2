#pragma once

#include "host/data/Describe.h"

#include <QTimer>
#include <QWidget>
#include <optional>

class QListWidget;

namespace korvana::desktop {

class ConditionEdit;
class VariableChooser;

/// The building blocks of an expression: the variables of the data and the values of the selected one. A
/// double-click or the space bar inserts them into the field of the expression.
class ExpressionPane : public QWidget {
    Q_OBJECT

public:
    /// @param dataSet  must outlive the pane, as must the field
    ExpressionPane(const DataSet& dataSet, ConditionEdit& field, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void showCodes();
    void countSome();
    void showCounted();
    void insertVariable(int variable0);
    void insertCode();

    const DataSet& data_;
    ConditionEdit& field_;
    VariableChooser* variables_;
    QListWidget* codes_;
    QTimer idle_;
    std::optional<VariableDescriber> describer_;
    int described_ = -1; ///< the variable whose values are listed, from 0
};

} // namespace korvana::desktop
