// A dialog of two forms: a choice in one closes it and opens the other.

#include "tests/apps/desktop/Labels.h"
#include "tests/apps/desktop/window/OpenWindow.h"

namespace korvana::desktop {
namespace {

constexpr int inputData = 197;
constexpr int intervals = 1011;
constexpr int step = 1012;
constexpr int entering = 1014;

struct Forms : WindowTest {
    void begin(const char* data) {
        ASSERT_TRUE(window->openFile(example(data)));
        window->startAnalysis();
        put(180, 0);
        click("OK");
        ASSERT_TRUE(shows(intervals));
        activate();
    }
    void activate() {
        view()->activateWindow();
        ASSERT_TRUE(QTest::qWaitFor([this] { return QApplication::activeWindow() == view(); }));
    }
    bool shows(int control) {
        return QTest::qWaitFor([this, control] {
            return view() != nullptr && view()->dialog() != nullptr && view()->isVisible() &&
                   model().Template().Find(control) != nullptr;
        });
    }
    QWidget* field(int control) {
        return view()->findChild<QWidget*>(QStringLiteral("control%1").arg(control));
    }
    QRadioButton* choice(int number) { return field(inputData)->findChildren<QRadioButton*>().at(number); }
    void choose(int number) {
        QTest::mouseClick(choice(number), Qt::LeftButton, {}, QPoint(8, choice(number)->height() / 2));
    }
};

TEST_F(Forms, FollowEachOtherInTheSamePlaceWithTheFocusOnTheChoice) {
    begin("veteran.csv");
    auto* search = view()->findChild<QLineEdit*>("search");
    for (const auto& [name, box] : {std::pair{"time", Qt::Key_1}, {"status", Qt::Key_2}}) {
        search->setText(name);
        QTest::keyClick(search, box, Qt::ControlModifier);
    }
    EXPECT_TRUE(says(*field(1002), "(filled in)"));
    EXPECT_TRUE(field(intervals)->isEnabled());
    EXPECT_FALSE(field(step)->isEnabled());
    auto* number = field(intervals)->findChild<QSpinBox*>();
    number->setFocus();
    number->selectAll();
    QTest::keyClicks(number, "9");
    view()->move(80, 90);
    const QPoint place = view()->pos();
    const QString name = title();

    const QPointer<DialogView> first(view());
    choose(1);
    ASSERT_TRUE(shows(entering));
    EXPECT_TRUE(QTest::qWaitFor([&] { return first.isNull(); }));
    EXPECT_EQ(title(), name);
    EXPECT_EQ(view()->pos(), place);
    EXPECT_TRUE(choice(1)->isChecked());
    activate();
    EXPECT_EQ(view()->focusWidget(), choice(1));

    QTest::keyClick(choice(1), Qt::Key_Up);
    ASSERT_TRUE(shows(intervals));
    activate();
    EXPECT_EQ(view()->focusWidget(), choice(0));
    EXPECT_EQ(std::get<int>(model().Value(intervals)), 9) << "what was being typed counts";
    EXPECT_EQ(std::get<ozm::VariableSelection>(model().Value(1001)), (ozm::VariableSelection{{3}, {4}}));
    EXPECT_TRUE(says(*field(1002), "(filled in)")) << "also after a form without codes";

    field(intervals)->setFocus();
    view()->showPage(inputData); // what the other form names when it leaves, whatever had the focus there
    EXPECT_EQ(view()->focusWidget(), choice(0));
    view()->showPage(99);
    EXPECT_EQ(view()->focusWidget(), choice(0));
    choose(1);
    ASSERT_TRUE(shows(entering));
    click("Cancel");
    EXPECT_EQ(title(), "Survival and Failure Time Analysis") << "not the other form";
}

TEST_F(Forms, AMessageOnTheWayIsShownOnceAndTheOtherFormOpensAfterIt) {
    begin("angina.csv");
    runner().data().weightBy("dying");
    const QString said = boxOf([&] { choose(1); });
    EXPECT_TRUE(said.contains("weights are turned off")) << said.toStdString();
    ASSERT_TRUE(shows(entering));
    EXPECT_EQ(runner().data().weightVariable(), 0);
    put(1001, ozm::VariableSelection{{1}, {2}, {3}});
    EXPECT_EQ(field(entering)->findChild<QSpinBox*>()->value(), 2418);
    click("OK");
    ASSERT_EQ(title(), "Life Table & Survival Time Distribution Results");
    click("Summary: Life table");
    ASSERT_EQ(book()->messages.size(), 1U);
    EXPECT_EQ(book()->messages[0].id, 20616);
}

} // namespace
} // namespace korvana::desktop
