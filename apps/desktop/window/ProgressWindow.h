#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace korvana::desktop {

/// What an analysis is doing while it computes: status text, progress bar, the lines of an iterative fit, and
/// a Cancel. Modal to the whole program, so that nothing else is clicked meanwhile.
class ProgressWindow : public QDialog {
    Q_OBJECT

public:
    explicit ProgressWindow(QWidget* parent = nullptr);

    void setStatus(const QString& text);
    void setCaption(const QString& text);
    /// `units` 0: the length is unknown.
    void setProgress(unsigned done, unsigned units);
    void addLine(const QString& line);
    /// Ready for another computation: no lines, Cancel not pressed.
    void reset();

public slots:
    /// Cancel, Escape and the window's close button all ask to stop; the window closes when the computation
    /// has ended.
    void reject() override;

signals:
    void cancelled();

private:
    QLabel* status_;
    QProgressBar* bar_;
    QPlainTextEdit* lines_;
    QPushButton* cancel_;
};

} // namespace korvana::desktop
