#pragma once

#include "apps/desktop/dialogs/VariableModel.h"

#include <QListView>

#include <functional>

namespace korvana::desktop {

/// A list of variables to select in, to drag from and to drop on. What the user wants done is told through
/// the functions; unset ones do nothing.
class DragList : public QListView {
public:
    explicit DragList(QWidget* parent);

    std::function<void()> onChosen;                              ///< double-click
    std::function<bool(const QKeyEvent&)> onKey;                 ///< true: the key was for the list
    std::function<void(const DraggedVariables&, int)> onDropped; ///< and the row to come before
    std::function<void()> onEntered;                             ///< got the focus

    static constexpr int ringRoom = 2; ///< at each side, within the frame

    /// What stands in the list while it is empty.
    void setPlaceholder(const QString& text) { placeholder_ = text; }
    /// Selected variables, in the order of the list.
    [[nodiscard]] std::vector<int> selectedNumbers() const;
    void selectNumbers(const std::vector<int>& numbers);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void initViewItemOption(QStyleOptionViewItem* option) const override;
    void focusInEvent(QFocusEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString placeholder_;
};

} // namespace korvana::desktop
