#pragma once

#include <functional>
#include <vector>

#include "apps/desktop/results/OutputView.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace korvana::desktop {

/// Text in a fixed-width font, to be read, selected and copied. Of a long text only the beginning is shown
/// until the user asks for the rest, because laying out a line takes longer than making it.
class ReportView : public OutputView {
    Q_OBJECT

public:
    static constexpr std::size_t linesAtFirst = 20000;

    using Source = std::function<std::vector<std::string>()>;
    /// `source` gives the lines (UTF-8); `refresh` calls it again.
    ReportView(Source source, const QString& name, QWidget* parent = nullptr);

    void refresh() override;
    void copy() override;
    [[nodiscard]] QWidget* content() override;

    [[nodiscard]] QString text() const;

private:
    void showLines(bool all);

    Source source_;
    QPlainTextEdit* edit_;
    QWidget* bar_;
    QLabel* rest_;
    QPushButton* showAll_;
};

} // namespace korvana::desktop
