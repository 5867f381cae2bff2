#pragma once

#include "apps/desktop/results/OutputView.h"
#include "apps/desktop/results/SheetCopy.h"
#include "apps/desktop/results/SheetModel.h"

class QScrollArea;
class QTableView;

namespace korvana::desktop {

class WrappedLabel;
/// A results table: title and notes, two-line headings, footnotes; cells and whole columns can be selected
/// and copied. Opens at once, however long the table is.
class SheetView : public OutputView {
    Q_OBJECT

public:
    explicit SheetView(const Spreadsheet& sheet, QWidget* parent = nullptr);

    void refresh() override;
    /// Whole columns are copied with their headings, cells without.
    void copy() override;
    [[nodiscard]] QWidget* content() override;
    [[nodiscard]] QList<QAction*> viewActions() override;

    void copyCells(const CopyOptions& options);

protected:
    void changeEvent(QEvent* event) override;

private:
    void fitColumns();
    void showTexts();

    const Spreadsheet& sheet_;
    SheetModel* model_;
    QTableView* table_;
    WrappedLabel* title_;
    WrappedLabel* notes_;
    WrappedLabel* footnotes_;
    QScrollArea* below_; ///< the table: it holds the footnotes, which scroll if there are many
    QAction* copyWithHeadings_;
    QAction* copyAsShown_;
    QAction* selectAll_;
};

} // namespace korvana::desktop
