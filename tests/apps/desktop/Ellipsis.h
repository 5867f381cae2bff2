#pragma once

#include <QtTest>
#include <QtWidgets>

#include <algorithm>

namespace korvana::desktop {

/// A text for `endsInEllipsis`, too long for any place.
inline QString tooLong() {
    return QString(200, QLatin1Char('H'));
}

/// Whether that text, black in its place on a widget, ends in an ellipsis: dots stand on the ground line, so
/// that the ink of the lower half reaches farther to the right than that of the upper half. A text that is
/// cut off, or runs on beyond the place, ends in an H.
inline bool endsInEllipsis(QWidget& on, const QRect& place) {
    const QImage image = on.grab(place.intersected(on.rect()).adjusted(2, 0, -2, 0)).toImage();
    const auto inkEnds = [&image](int from, int to) {
        int last = -1;
        for (int y = from; y < to; ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qGray(image.pixel(x, y)) < 100) last = std::max(last, x);
        return last;
    };
    const int middle = image.height() / 2;
    const int reach = on.fontMetrics().capHeight() / 2;
    const int upper = inkEnds(middle - reach, middle);
    const int lower = inkEnds(middle, middle + reach + 2);
    return upper > 0 && lower - upper >= on.fontMetrics().averageCharWidth() / 2;
}

inline bool endsInEllipsis(const QListView& list, int row) {
    return endsInEllipsis(*list.viewport(), list.visualRect(list.model()->index(row, 0)));
}

inline bool endsInEllipsis(const QHeaderView& header, int section) {
    return endsInEllipsis(*header.viewport(), QRect(header.sectionViewportPosition(section), 0,
                                                    header.sectionSize(section), header.height()));
}

} // namespace korvana::desktop
