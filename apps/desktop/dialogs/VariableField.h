#pragma once

#include "apps/desktop/dialogs/ControlField.h"
#include "apps/desktop/dialogs/VariableModel.h"

#include <vector>

class QLineEdit;

namespace korvana::desktop {

class RoleBox;
class DragList;

/// The variables of the data at the left, with a search, and one box per role at the right. A variable has
/// one role: it is in one box, and there only once. The user decides the order within a box.
///
/// Double-click or Right puts the selected variables into the box whose prompt is bold: the one used last, or
/// else the first that still needs variables. Ctrl+1, Ctrl+2, ... choose a box, also from the search field;
/// arrow buttons and dragging do the same with the mouse. In a box, double-click, Delete or Left removes
/// variables, and Ctrl+Up and Ctrl+Down move them. Return is left to the dialog, where it means OK.
class VariableField : public ControlField {
public:
    VariableField(const ozm::ControlTemplate& control, FieldHost& host, QWidget* parent);

    void showValue(const ozm::ControlValue& value) override;
    void dataChanged() override;
    [[nodiscard]] bool growsInHeight() const override { return true; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    void build();
    void connectAvailable();
    void connectBox(int role);
    void filter();
    void showState();
    [[nodiscard]] int nextRole() const;
    [[nodiscard]] ozm::VariableSelection selection() const;
    [[nodiscard]] RoleBox& box(int role) const { return *boxes_[static_cast<std::size_t>(role)]; }
    bool availableKey(const QKeyEvent& event);
    bool boxKey(int role, const QKeyEvent& event);
    /// Moves variables into a box, before a row, from the box they were in (-1: the list of the data).
    void add(int role, const std::vector<int>& numbers, int row, int origin = -1);
    /// Why variables from `origin` cannot go into a box because they are in one already; else empty.
    [[nodiscard]] QString standsAlready(int role, const std::vector<int>& numbers, int origin) const;
    void remove(int role, const std::vector<int>& numbers);
    void move(int role, int by);

    std::vector<KnownVariable> known_;
    QLineEdit* search_;
    DragList* available_;
    VariableModel* availableModel_;
    std::vector<RoleBox*> boxes_;
    int usedLast_ = -1; ///< the box that the user was in last
    int emptying_ = -1; ///< the box whose arrow removes variables
};

} // namespace korvana::desktop
