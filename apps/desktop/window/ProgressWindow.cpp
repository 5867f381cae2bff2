#include "apps/desktop/window/ProgressWindow.h"

#include "apps/desktop/InputGate.h"
#include "apps/desktop/text/ElidedLabel.h"
#include "apps/desktop/text/FixedFont.h"

#include <QHideEvent>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace korvana::desktop {

ProgressWindow::ProgressWindow(QWidget* parent)
    : QDialog(parent), status_(new ElidedLabel(this)), bar_(new QProgressBar(this)),
      lines_(new QPlainTextEdit(this)), cancel_(new QPushButton(tr("Cancel"), this)) {
    setWindowTitle(tr("Computing"));
    lines_->setReadOnly(true);
    lines_->setLineWrapMode(QPlainTextEdit::NoWrap);
    lines_->setFont(fixedFont());
    constexpr int columns = 70; // the header of an estimation
    constexpr int rows = 12;
    const QFontMetrics metrics = lines_->fontMetrics();
    lines_->setMinimumSize(metrics.horizontalAdvance(QString(columns, QLatin1Char('0'))) +
                               2 * metrics.height(),
                           metrics.lineSpacing() * rows);
    lines_->setAccessibleName(tr("Iterations"));
    bar_->setAccessibleName(tr("Progress"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(status_);
    layout->addWidget(bar_);
    layout->addWidget(lines_);
    layout->addWidget(cancel_, 0, Qt::AlignRight);
    // Not of the window itself, which would then stay as narrow when the lines appear.
    bar_->setMinimumWidth(fontMetrics().averageCharWidth() * 60);
    connect(cancel_, &QPushButton::clicked, this, &ProgressWindow::reject);
    reset();
}

ProgressWindow::~ProgressWindow() = default;

void ProgressWindow::showEvent(QShowEvent* event) {
    if (gate_ == nullptr) gate_ = std::make_unique<InputGate>(*this, parentWidget());
    QDialog::showEvent(event);
}

void ProgressWindow::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) gate_.reset(); // not when it is merely minimized
    QDialog::hideEvent(event);
}

void ProgressWindow::setStatus(const QString& text) {
    status_->setText(text.trimmed());
}

void ProgressWindow::setCaption(const QString& text) {
    bar_->setFormat(text.isEmpty() ? QStringLiteral("%p%") : text.trimmed() + QStringLiteral(" %p%"));
}

void ProgressWindow::setProgress(unsigned done, unsigned units) {
    // Counts may exceed the range of a progress bar; a thousand steps are more than enough for it.
    bar_->setRange(0, units == 0 ? 0 : 1000);
    if (units != 0) bar_->setValue(static_cast<int>(std::lround(1000.0 * std::min(done, units) / units)));
}

void ProgressWindow::addLine(const QString& line) {
    lines_->show();
    lines_->appendPlainText(line);
    lines_->horizontalScrollBar()->setValue(0);
}

void ProgressWindow::reset() {
    status_->setText(tr("Computing ..."));
    lines_->clear();
    lines_->hide();
    cancel_->setEnabled(true);
    setCaption({});
    setProgress(0, 0);
}

void ProgressWindow::reject() {
    if (!cancel_->isEnabled()) return;
    cancel_->setEnabled(false);
    status_->setText(tr("Stopping ..."));
    emit cancelled();
}

} // namespace korvana::desktop
