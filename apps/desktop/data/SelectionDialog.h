#pragma once

#include "host/data/Describe.h"
#include "host/session/ActiveData.h"

#include <QDialog>
#include <QTimer>
#include <memory>
#include <optional>

class QLabel;
class QListWidget;

namespace korvana::desktop {

class ConditionEdit;
class VariableChooser;

/// Edits the condition that cases must satisfy to take part; an empty one takes all cases. The number of
/// cases that it selects is counted while one types, in small pieces, so that the dialog stays alive on any
/// number of cases. OK applies the condition (exec() answers Accepted) once it is counted; a fault is shown
/// and marked where it stands.
class SelectionDialog : public QDialog {
    Q_OBJECT

public:
    /// @param active  stays while the dialog is open
    explicit SelectionDialog(ActiveData& active, QWidget* parent = nullptr);
    ~SelectionDialog() override;

    void accept() override;

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void conditionChanged();
    void startCounting();
    void countSome();
    void showCount();
    void showError(const QString& text);
    void showCodes();
    void showCounted();
    void insertVariable(int variable0);
    void insertCode();

    ActiveData& data_;
    ConditionEdit* condition_;
    VariableChooser* variables_;
    QListWidget* codes_;
    QLabel* outcome_;
    QTimer pause_; ///< between the last key and the counting
    QTimer idle_;
    std::unique_ptr<SelectionPass> pass_; ///< over the condition as it stands in the field
    std::optional<VariableDescriber> describer_;
    int described_ = -1; ///< the variable whose values are listed, from 0
    bool failed_ = false;
    bool applyWhenCounted_ = false;
};

} // namespace korvana::desktop
