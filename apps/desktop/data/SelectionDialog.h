#pragma once

#include "apps/desktop/data/ExpressionDialog.h"

#include <memory>

namespace korvana::desktop {

/// Edits the condition that cases must satisfy to be selected; an empty one selects all cases. The selected
/// cases are counted while the user types, in small pieces, so that the dialog responds however many there
/// are. OK applies the condition (exec() returns Accepted) once they are counted; an error is shown and
/// marked in the condition.
class SelectionDialog final : public ExpressionDialog {
    Q_OBJECT

public:
    /// @param active  must exist while the dialog is open
    explicit SelectionDialog(ActiveData& active, QWidget* parent = nullptr);
    ~SelectionDialog() override;

    void accept() override;

private:
    void look() override;
    void forgetCount();
    void countSome();
    void showCount();
    void fail(const std::exception& error);

    QTimer idle_;
    std::unique_ptr<SelectionPass> pass_; ///< over the condition in the field
    bool failed_ = false;
    bool applyWhenCounted_ = false;
};

} // namespace korvana::desktop
