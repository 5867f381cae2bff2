#include "apps/desktop/dialogs/FreePlace.h"

#include <QAbstractButton>
#include <QLabel>
#include <QScrollArea>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>
#include <functional>
#include <limits>
#include <vector>

namespace korvana::desktop {
namespace {

QRect within(const QWidget& window, const QWidget& one) {
    return {one.mapTo(&window, QPoint(0, 0)), one.size()};
}

/// What must not be covered: everything that shows something of its own.
std::vector<QRect> takenPlaces(const QWidget& window, const QWidget& but) {
    std::vector<QRect> places;
    for (const QWidget* one : window.findChildren<QWidget*>()) {
        if (!one->isVisible() || one == &but || but.isAncestorOf(one)) continue;
        const auto* text = qobject_cast<const QLabel*>(one);
        const bool shows = (text != nullptr && !text->text().isEmpty()) ||
                           one->focusPolicy() != Qt::NoFocus ||
                           qobject_cast<const QAbstractButton*>(one) != nullptr ||
                           qobject_cast<const QTabBar*>(one) != nullptr;
        // A scroll area takes the focus for its contents, which are examined separately.
        const auto* area = qobject_cast<const QScrollArea*>(one);
        if (!shows || area != nullptr || qobject_cast<const QTabWidget*>(one) != nullptr) continue;
        places.push_back(within(window, *one));
    }
    return places;
}

/// The distance from the end of a span to the beginning of another.
int beyond(int from, int to, int otherFrom, int otherTo) {
    return std::max({from - otherTo, otherFrom - to, 0});
}

/// How far a span extends beyond another.
int outside(int from, int to, int otherFrom, int otherTo) {
    return std::max(otherFrom - from, 0) + std::max(to - otherTo, 0);
}

bool reaches(Reach reach, int across, int down, int margin) {
    switch (reach) {
    case Reach::Touching:
        return (across == 0 || down == 0) && across + down <= 2 * margin;
    case Reach::InItsRow:
        return down == 0;
    case Reach::Anywhere:
        break;
    }
    return true;
}

} // namespace

QRect freePlace(const QWidget& window, const QWidget& but, const QWidget& subject, const QSize& size,
                const QSize& room, Reach reach) {
    const int margin = window.fontMetrics().height() / 4;
    const std::vector<QRect> taken = takenPlaces(window, but);
    const QRect about = within(window, subject);
    // Only places whose edges touch those of something need to be tried.
    std::vector<int> xs{margin, room.width() - margin - size.width()};
    std::vector<int> ys{margin, room.height() - margin - size.height()};
    const auto tryAround = [&](const QRect& one) {
        xs.insert(xs.end(), {one.left(), one.right() + 1 + margin, one.left() - margin - size.width()});
        ys.insert(ys.end(),
                  {one.top(), one.bottom() + 1 + margin / 2, one.top() - margin / 2 - size.height()});
    };
    tryAround(about);
    for (const QRect& one : taken)
        tryAround(one);
    // Of equally near places, the lower one, then the one further left.
    std::sort(xs.begin(), xs.end());
    std::sort(ys.begin(), ys.end(), std::greater<>());
    xs.erase(std::unique(xs.begin(), xs.end()), xs.end());
    ys.erase(std::unique(ys.begin(), ys.end()), ys.end());
    const QRect inside = QRect({0, 0}, room).marginsRemoved({margin, margin, margin, margin});
    QRect best;
    int least = std::numeric_limits<int>::max();
    for (const int y : ys) {
        for (const int x : xs) {
            const QRect place({x, y}, size);
            const int across = beyond(place.left(), place.right(), about.left(), about.right());
            const int down = beyond(place.top(), place.bottom(), about.top(), about.bottom());
            // One that extends beyond its subject counts as a little farther away.
            const int farness =
                4 * (across + down) +
                (across > 0 ? outside(place.top(), place.bottom(), about.top(), about.bottom())
                            : outside(place.left(), place.right(), about.left(), about.right()));
            const bool worth =
                farness < least && inside.contains(place) && reaches(reach, across, down, margin);
            if (!worth || std::any_of(taken.begin(), taken.end(),
                                      [&place](const QRect& one) { return one.intersects(place); }))
                continue;
            best = place;
            least = farness;
        }
    }
    return best;
}

} // namespace korvana::desktop
