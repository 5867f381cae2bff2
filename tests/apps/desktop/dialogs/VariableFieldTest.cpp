#include "tests/apps/desktop/dialogs/EveryKind.h"

#include "tests/apps/desktop/Ellipsis.h"

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
    doubleClick(available(), 0);
    doubleClick(available(), 2);
    EXPECT_EQ(chosen(), (VariableSelection{{1}, {3}}));
    doubleClick(available(), 1);
    EXPECT_EQ(chosen(), (VariableSelection{{1, 2}, {3}})) << "then the one that has room";
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
    EXPECT_EQ(chosen(), (VariableSelection{{2}, {4}}));
    QTest::keyClick(times, Qt::Key_Left);
    QTest::keyClick(times, Qt::Key_Left);
    EXPECT_EQ(chosen(), (VariableSelection{{}, {4}}));
}

TEST_F(VariableBoxes, ArrowsAddAndTakeAway) {
    auto* arrow = view->findChild<QToolButton*>("arrow1");
    available()->clearSelection();
    arrow->click();
    EXPECT_EQ(complaint(), "Select the variables in the list at the left first.");
    available()->selectNumbers({1});
    QTest::mouseClick(arrow, Qt::LeftButton);
    EXPECT_EQ(chosen(), (VariableSelection{{}, {1}}));
    list("role1")->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(arrow->arrowType(), Qt::LeftArrow);
    QTest::mouseClick(arrow, Qt::LeftButton);
    EXPECT_EQ(chosen(), (VariableSelection{{}, {}}));
    EXPECT_EQ(arrow->arrowType(), Qt::RightArrow);
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

TEST_F(VariableBoxes, WhatDoesNotFitIsNotTakenAndSaid) {
    select({{1}, {3}});
    available()->setFocus(Qt::TabFocusReason);
    choose(Qt::Key_2, {1, 2, 3, 4});
    EXPECT_TRUE(complaint().startsWith("'time' is in 'Times' already")) << complaint().toStdString();
    choose(Qt::Key_2, {3});
    EXPECT_EQ(complaint(), "'status' is in this box already.");
    choose(Qt::Key_2, {2});
    EXPECT_EQ(complaint(), "'Indicator' takes at most 1 variable, not 2.");
    EXPECT_EQ(complainedAt(), list("role1"));
    EXPECT_EQ(chosen(), (VariableSelection{{1}, {3}}));
    EXPECT_EQ(list("role1")->model()->rowCount(), 1);
    QTest::keyClick(available(), Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(complaint(), "'Indicator' takes at most 1 variable, not 2.") << "another box settles nothing";
    QTest::keyClick(list("role1"), Qt::Key_Delete);
    empty(1);
    EXPECT_EQ(complaint(), "");
}

TEST_F(VariableBoxes, AVariableHasOneRoleHoweverItIsPutThere) {
    select({{1}, {}});
    const VariableSelection before = chosen();
    const auto refused = [&](const char* how) {
        EXPECT_EQ(chosen(), before) << how;
        EXPECT_EQ(complainedAt(), list("role1")) << how;
        EXPECT_TRUE(complaint().startsWith("'time' is in 'Times' already")) << complaint().toStdString();
        callout()->hide();
    };
    doubleClick(available(), 0);
    refused("double-click");
    choose(Qt::Key_2, {1});
    refused("key");
    QTest::mouseClick(view->findChild<QToolButton*>("arrow1"), Qt::LeftButton);
    refused("arrow");
    drop(available(), 0, list("role1"), 0);
    refused("drag");
    drop(list("role0"), 0, list("role1"), 0);
    EXPECT_EQ(chosen(), (VariableSelection{{}, {1}})) << "but it can change its role";
    EXPECT_EQ(complaint(), "");
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
    EXPECT_EQ(chosen(), (VariableSelection{{}, {}}));
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
    for (const auto& [text, rows] : {std::pair{"STAT", 1}, {"days", 1}, {"4", 1}, {"nothing", 0}})
        EXPECT_EQ(found(text), rows) << text;
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
    variable.name = korvana::desktop::tooLong().toStdString();
    korvana::test::addVariable(other, variable, [](int) { return 0; });
    session.data().open(std::move(other));
    view->refreshData();
    ASSERT_EQ(available()->model()->rowCount(), 1);
    EXPECT_EQ(available()->model()->index(0, 0).data().toString(), korvana::desktop::tooLong());
    available()->clearSelection();
    EXPECT_TRUE(korvana::desktop::endsInEllipsis(*available(), 0));
    const QString tip = available()->model()->index(0, 0).data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(tip.contains(korvana::desktop::tooLong()));
    EXPECT_EQ(list("role1")->model()->index(0, 0).data().toString(), "(no variable 4)");
}

} // namespace
} // namespace everykind
