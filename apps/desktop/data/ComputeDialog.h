#pragma once

#include "apps/desktop/data/ExpressionDialog.h"

class QLineEdit;

namespace korvana::desktop {

/// Computes a new variable from others: a name, an expression and, while the user types, its values for the
/// first cases, or the error in it. OK adds the variable to the data (exec() returns Accepted).
class ComputeDialog final : public ExpressionDialog {
    Q_OBJECT

public:
    /// @param active  must exist while the dialog is open
    explicit ComputeDialog(ActiveData& active, QWidget* parent = nullptr);

    void accept() override;

private:
    void look() override;
    [[nodiscard]] Definition definition() const;

    QLineEdit* name_;
};

} // namespace korvana::desktop
