#include "tests/apps/desktop/dialogs/EveryKind.h"

namespace everykind {
namespace {

using korvana::desktop::DragList;

struct VariableBoxes : Window {
    void drop(DragList* from, int row, DragList* onto, int before) {
        const std::unique_ptr<QMimeData> data(from->model()->mimeData({from->model()->index(row, 0)}));
        const QPoint at = before < onto->model()->rowCount()
                              ? onto->visualRect(onto->model()->index(before, 0)).center()
                              : onto->viewport()->rect().bottomLeft() - QPoint(-5, 2);
        QDragEnterEvent enter(at, Qt::CopyAction, data.get(), Qt::LeftButton, {});
        QCoreApplication::sendEvent(onto->viewport(), &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent event(at, Qt::CopyAction, data.get(), Qt::LeftButton, {});
        QCoreApplication::sendEvent(onto->viewport(), &event);
    }
    const VariableSelection& chosen() { return value<VariableSelection>(Variables); }
};

TEST_F(VariableBoxes, DoubleClickFillsTheBoxThatLacksVariables) {
    EXPECT_EQ(available()->model()->index(0, 0).data().toString(), "time  –  Survival in days");
    for (const int row : {0, 2, 1}) // the last into the box that has room
        doubleClick(available(), row);
    EXPECT_EQ(chosen(), (VariableSelection{{1, 2}, {3}}));
    doubleClick(list("role0"), 0);
    EXPECT_EQ(chosen(), (VariableSelection{{2}, {3}})) << "and in a box takes away";
}

TEST_F(VariableBoxes, AreFilledByKeyboardAlone) {
    available()->setFocus(Qt::TabFocusReason);
    QTest::keyClick(available(), Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyClick(available(), Qt::Key_Right);
    EXPECT_EQ(chosen(), (VariableSelection{{1, 2}, {}}));
    QTest::keyClick(available(), Qt::Key_End);
    QTest::keyClick(available(), Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(chosen(), (VariableSelection{{1, 2}, {4}}));

    auto* times = list("role0");
    times->setFocus(Qt::TabFocusReason);
    QTest::keyClick(times, Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(chosen(), (VariableSelection{{2, 1}, {4}}));
    QTest::keyClick(times, Qt::Key_Delete);
    QTest::keyClick(times, Qt::Key_Left);
    EXPECT_EQ(chosen(), (VariableSelection{{}, {4}}));
}

TEST_F(VariableBoxes, ArrowsAddAndTakeAway) {
    auto* arrow = view->findChild<QToolButton*>("arrow1");
    available()->clearSelection();
    arrow->click();
    EXPECT_EQ(complaint(), "Select the variables in the list at the left first.");
    available()->selectNumbers({1});
    arrow->click();
    EXPECT_EQ(chosen(), (VariableSelection{{}, {1}}));
    list("role1")->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(arrow->arrowType(), Qt::LeftArrow);
    arrow->click();
    EXPECT_EQ(chosen(), (VariableSelection{{}, {}}));
}

TEST_F(VariableBoxes, DraggingAddsMovesAndTakesAway) {
    drop(available(), 0, list("role0"), 0);
    drop(available(), 1, list("role0"), 0);
    EXPECT_EQ(chosen(), (VariableSelection{{2, 1}, {}})) << "before the row dropped on";
    drop(list("role0"), 0, list("role0"), 9);
    EXPECT_EQ(chosen(), (VariableSelection{{1, 2}, {}}));
    drop(list("role0"), 0, list("role1"), 0);
    EXPECT_EQ(chosen(), (VariableSelection{{2}, {1}}));
    drop(list("role1"), 0, available(), 0);
    EXPECT_EQ(chosen(), (VariableSelection{{2}, {}}));
    QMimeData text;
    text.setText("time");
    QDropEvent event(QPoint(1, 1), Qt::CopyAction, &text, Qt::LeftButton, {});
    QCoreApplication::sendEvent(list("role1")->viewport(), &event);
    EXPECT_EQ(chosen(), (VariableSelection{{2}, {}})) << "a text is no variable";
}

TEST_F(VariableBoxes, WhatDoesNotFitIsRefusedWithTheReason) {
    select({{1}, {3}});
    const auto refused = [&](const std::function<void()>& way, const char* reason) {
        callout()->hide();
        way();
        EXPECT_TRUE(complaint().startsWith(reason)) << complaint().toStdString();
        EXPECT_EQ(complainedAt(), list("role1"));
        EXPECT_EQ(chosen(), (VariableSelection{{1}, {3}})) << reason;
    };
    refused([&] { choose(Qt::Key_2, {3}); }, "'status' is in this box already.");
    refused([&] { choose(Qt::Key_2, {2}); }, "'Indicator' takes at most 1 variable, not 2.");
    // Nothing is wrong any more: the reason disappears with the next action, or when the focus moves.
    const std::function<void()> next[] = {
        [&] { QTest::keyClick(available(), Qt::Key_1, Qt::ControlModifier); },
        [&] { empty(1); },
        [&] { editor<QComboBox>(Code)->setFocus(); },
        [&] { QTest::keyClick(available(), Qt::Key_Tab); },
    };
    for (const auto& step : next) {
        select({{1}, {3}});
        available()->setFocus();
        refused([&] { choose(Qt::Key_2, {2}); }, "'Indicator' takes at most 1 variable, not 2.");
        step();
        EXPECT_EQ(complaint(), "") << &step - next;
    }

    // A variable has one role, in whatever way it was put there.
    select({{1}, {3}});
    const char* taken = "'time' is in 'Times' already";
    available()->selectNumbers({1});
    refused([&] { choose(Qt::Key_2, {1}); }, taken);
    refused([&] { view->findChild<QToolButton*>("arrow1")->click(); }, taken);
    refused([&] { drop(available(), 0, list("role1"), 0); }, taken);
    empty(1);
    doubleClick(available(), 0);
    EXPECT_TRUE(complaint().startsWith(taken)) << complaint().toStdString();
    drop(list("role0"), 0, list("role1"), 0);
    EXPECT_EQ(chosen(), (VariableSelection{{}, {1}})) << "but it can change its role";
}

TEST_F(VariableBoxes, TextsAreRefusedWhereNumbersAreMeasured) {
    korvana::DataSet texts("texts.csv", 2);
    korvana::Variable group;
    group.name = "group";
    group.kind = korvana::VariableKind::Text;
    korvana::test::addVariable(texts, group, [](int i) { return i; });
    session.data().open(std::move(texts));
    view->refreshData();
    doubleClick(available(), 0);
    EXPECT_EQ(complaint(), "'group' holds texts; 'Times' takes numbers or dates.");
    EXPECT_EQ(complainedAt(), list("role0"));
    choose(Qt::Key_2, {1});
    EXPECT_EQ(chosen(), (VariableSelection{{}, {1}})) << "other boxes take them";
    drop(list("role1"), 0, list("role0"), 0);
    EXPECT_EQ(chosen(), (VariableSelection{{}, {1}}));
}

TEST_F(VariableBoxes, SearchFindsNamesLabelsAndNumbers) {
    auto* search = view->findChild<QLineEdit*>("search");
    const auto found = [&](const char* text) {
        search->setText(text);
        return available()->model()->rowCount();
    };
    for (const char* text : {"STAT", "days", "4"})
        EXPECT_EQ(found(text), 1) << text;
    search->clear();
    search->setFocus();
    QTest::keyClicks(search, "how");
    QTest::keyClick(search, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(chosen(), (VariableSelection{{3}, {}}));
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_EQ(available()->model()->rowCount(), 4)
        << "Escape empties the search and does not leave the dialog";
    EXPECT_TRUE(view->isVisible());
}

TEST_F(VariableBoxes, FollowOtherData) {
    select({{}, {4}});
    korvana::DataSet other("other.csv", 1);
    korvana::Variable variable;
    variable.name = "other";
    korvana::test::addVariable(other, variable, [](int) { return 0; });
    session.data().open(std::move(other));
    view->refreshData();
    ASSERT_EQ(available()->model()->rowCount(), 1);
    EXPECT_EQ(available()->model()->index(0, 0).data().toString(), "other");
    EXPECT_EQ(list("role1")->model()->index(0, 0).data().toString(), "(no variable 4)");
}

} // namespace
} // namespace everykind
