#pragma once

#include "host/data/Describe.h"

#include <QTimer>
#include <QWidget>
#include <optional>

class QListWidget;

namespace korvana::desktop {

class ConditionEdit;
class VariableChooser;

/// What an expression is made of: the variables of the data and the values of the one that is chosen, which
/// double-click and the space bar insert into the field of the expression.
class ExpressionPane : public QWidget {
    Q_OBJECT

public:
    /// @param dataSet  stays, like the field, while the pane does
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
