#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

class QPrinter;

namespace korvana::desktop {

/// One output of a run on the screen. Views look at what the book holds and never change it; the book
/// outlives them.
class OutputView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// What is shown has changed: draw it anew.
    virtual void refresh() = 0;
    /// Copies what is selected, or everything where nothing is.
    virtual void copy() = 0;
    /// The part that takes the keyboard.
    [[nodiscard]] virtual QWidget* content() = 0;
    /// What the view itself offers in menus, besides copying; the view owns the actions.
    [[nodiscard]] virtual QList<QAction*> viewActions() { return {}; }

signals:
    void statusText(const QString& text);
    /// The user asks for the menu of the output, at a place on the screen.
    void menuWanted(const QPoint& place);
};

} // namespace korvana::desktop
