#pragma once

#include "apps/desktop/dialogs/DragList.h"
#include "support/dialogs/DialogTemplate.h"

class QGridLayout;
class QLabel;
class QToolButton;

namespace korvana::desktop {

/// One box of a variable selection: its prompt, its variables and the arrow that fills or empties it.
class RoleBox : public QObject {
public:
    RoleBox(const ozm::RoleTemplate& role, int place, const std::vector<KnownVariable>& known,
            QWidget* parent);

    /// Takes two columns of a grid, beginning at a cell.
    void layOut(QGridLayout& grid, int row, int column) const;

    void setNumbers(const std::vector<int>& numbers);
    [[nodiscard]] const std::vector<int>& numbers() const { return model_->numbers(); }
    [[nodiscard]] bool hasRoom() const { return numbers().size() < role_.maximum; }
    [[nodiscard]] bool lacks() const { return numbers().size() < role_.minimum; }
    [[nodiscard]] bool takesOne() const { return role_.maximum == 1; }

    /// Whether the arrow points into the box.
    void setFilling(bool filling);
    /// Whether the next chosen variables go into this box.
    void setNext(bool next);

    [[nodiscard]] const QString& prompt() const { return prompt_; }
    [[nodiscard]] DragList& list() const { return *list_; }
    [[nodiscard]] QToolButton& arrow() const { return *arrow_; }

private:
    const ozm::RoleTemplate& role_;
    QString prompt_;
    QLabel* caption_;
    QToolButton* arrow_;
    DragList* list_;
    VariableModel* model_;
};

} // namespace korvana::desktop
