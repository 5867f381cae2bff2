#pragma once

#include "apps/desktop/data/ExpressionDialog.h"

#include <memory>

namespace korvana::desktop {

/// Edits the condition that cases must satisfy to take part; an empty one takes all cases. The number of
/// cases that it selects is counted while one types, in small pieces, so that the dialog stays alive on any
/// number of cases. OK applies the condition (exec() answers Accepted) once it is counted; a fault is shown
/// and marked where it stands.
class SelectionDialog final : public ExpressionDialog {
    Q_OBJECT

public:
    /// @param active  stays while the dialog is open
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
    std::unique_ptr<SelectionPass> pass_; ///< over the condition as it stands in the field
    bool failed_ = false;
    bool applyWhenCounted_ = false;
};

} // namespace korvana::desktop
