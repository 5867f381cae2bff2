#pragma once

#include <QHeaderView>
#include <QStyleOptionHeader>

#include <algorithm>

namespace korvana::desktop {

/// The header of a table: a name too long for its column ends in an ellipsis, line by line. (Qt's own eliding
/// takes two lines for one.)
class EllipsisHeader final : public QHeaderView {
public:
    EllipsisHeader(Qt::Orientation orientation, QWidget* parent) : QHeaderView(orientation, parent) {
        setSectionsClickable(true); // like a table's default header
        setHighlightSections(true);
    }

protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int section) const override {
        QHeaderView::initStyleOptionForIndex(option, section);
        // The heading of a column with a selected cell is bold; columns are made wide enough for that.
        QFont bold = font();
        bold.setBold(true);
        const QFontMetrics metrics(bold);
        const int width = orientation() == Qt::Horizontal ? sectionSize(section) : viewport()->width();
        const int room = width - 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, this);
        QStringList lines = option->text.split(QLatin1Char('\n'));
        for (QString& line : lines)
            line = metrics.elidedText(line, Qt::ElideRight, std::max(room, 0));
        option->text = lines.join(QLatin1Char('\n'));
    }
};

} // namespace korvana::desktop
