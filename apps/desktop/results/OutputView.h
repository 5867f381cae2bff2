#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

class QPrinter;

namespace korvana::desktop {

/// One output of a run on the screen. Views read the book and never change it; the book outlives them.
class OutputView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// The output has changed: redraws it.
    virtual void refresh() = 0;
    /// Copies the selection, or everything when nothing is selected.
    virtual void copy() = 0;
    /// The widget that takes the focus.
    [[nodiscard]] virtual QWidget* content() = 0;
    /// Menu actions of the view itself, besides copying; the view owns them. Their keys work while it is the
    /// output that is shown, in the windows and widgets that their context names.
    [[nodiscard]] virtual QList<QAction*> viewActions() { return {}; }

signals:
    void statusText(const QString& text);
    /// The user asks for the context menu of the output, at a place on the screen.
    void menuWanted(const QPoint& place);
};

} // namespace korvana::desktop
