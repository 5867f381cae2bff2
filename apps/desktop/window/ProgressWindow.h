#pragma once

#include <QDialog>

#include <memory>

class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace korvana::desktop {

class ElidedLabel;
class InputGate;

/// What an analysis is doing while it computes: status text, progress bar, the lines of an iterative fit, and
/// a Cancel button. While it is shown, nothing else can be clicked, but the main window can be closed.
class ProgressWindow : public QDialog {
    Q_OBJECT

public:
    explicit ProgressWindow(QWidget* parent = nullptr);
    ~ProgressWindow() override;

    void setStatus(const QString& text);
    void setCaption(const QString& text);
    /// `units` 0: the length is unknown.
    void setProgress(unsigned done, unsigned units);
    void addLine(const QString& line);
    /// Ready for another computation: no lines, Cancel not pressed.
    void reset();

    /// Cancel, Escape and the window's close button all ask to stop; the window closes when the computation
    /// has ended.
    void reject() override;

signals:
    void cancelled();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    std::unique_ptr<InputGate> gate_;
    ElidedLabel* status_;
    QProgressBar* bar_;
    QPlainTextEdit* lines_;
    QPushButton* cancel_;
};

} // namespace korvana::desktop
