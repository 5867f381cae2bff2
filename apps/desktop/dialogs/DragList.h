#pragma once

#include "apps/desktop/dialogs/VariableModel.h"

#include <QListView>

#include <functional>

namespace korvana::desktop {

/// A list of variables to select, drag from and drop on. It reports the user's actions through these
/// functions, any of which may be empty.
class DragList : public QListView {
public:
    explicit DragList(QWidget* parent);

    std::function<void()> onChosen;                              ///< double-click
    std::function<bool(const QKeyEvent&)> onKey;                 ///< true: the key was for the list
    std::function<void(const DraggedVariables&, int)> onDropped; ///< and the row to come before
    std::function<void()> onEntered;                             ///< the list got the focus

    static constexpr int ringRoom = 2; ///< at each side, within the frame

    /// The text shown in the list while it is empty.
    void setPlaceholder(const QString& text) { placeholder_ = text; }
    /// The selected variables, in the order of the list.
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
