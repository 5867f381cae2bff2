// What a dialog fills in or understands by itself: the codes of a variable with just two, percentages.

#include "tests/apps/desktop/dialogs/EveryKind.h"

#include "apps/desktop/dialogs/CodeGuess.h"

#include <cmath>

namespace everykind {
namespace {

using korvana::desktop::guessCodes;

constexpr std::string_view overWords[] = {"dead", "event"};
constexpr std::string_view openWords[] = {"alive", "censored"};
constexpr ControlTemplate codeField(int id, std::string_view text, double usual,
                                    std::span<const std::string_view> words) {
    return {.id = id,
            .kind = ControlKind::CodeField,
            .text = text,
            .codesOfRole = 1,
            .usualCode = usual,
            .codeWords = words};
}
constexpr ControlTemplate over = codeField(21, "&Over:", 1, overWords);
constexpr ControlTemplate open = codeField(22, "O&pen:", 0, openWords);
constexpr ControlTemplate pairControls[] = {
    controls[1], // the variables
    over,
    open,
    {.id = Level, .kind = ControlKind::Real, .text = "&Level:", .decimals = 6, .isShare = true},
    {.id = ControlOk, .text = "OK"},
};
constexpr DialogTemplate pairDialog{3, "A pair of codes", std::span(pages).first(1), pairControls};

TEST(CodeGuess, GoesByWordsThenByTheVariablesNameThenByWhatIsUsual) {
    struct Trial {
        const char* lowerLabel;
        const char* upperLabel;
        const char* variable;
        double lower;
        double upper;
        double over; ///< the code that the first field should get
    };
    const Trial trials[] = {
        {"Alive", "DEAD", "status", 1, 2, 2},
        {"dead", "alive", "status", 1, 2, 1},
        {"event", "censored", "x", 0, 1, 0},
        {"no event", "event", "x", 1, 2, 2},
        {"dead", "still in study", "x", 3, 4, 3},
        {"dead of disease", "dead of other causes", "x", 0, 1, 1}, // says nothing
        {"alive after event", "alive", "x", 0, 1, 0},
        {"", "", "status", 0, 1, 1},
        {"", "", "censored", 0, 1, 0}, // 1 means yes to the name
        {"", "", "dead", 0, 1, 1},
        {"no", "yes", "censored", 1, 2, 1},
        {"yes", "no", "event", 1, 2, 1},
        {"", "", "status", 1, 2, 1},
        {"", "", "status", 0, 2, 2},
        {"", "", "status", 5, 9, 5}, // ascending
        {"deadline", "allive", "x", 5, 9, 5},
    };
    for (const Trial& trial : trials) {
        const auto guessed = guessCodes(
            {&over, &open}, {CodeCount{trial.lower, trial.lowerLabel, 1}, {trial.upper, trial.upperLabel, 1}},
            trial.variable);
        EXPECT_EQ(guessed[0], trial.over)
            << trial.lowerLabel << '/' << trial.upperLabel << ' ' << trial.variable;
        EXPECT_EQ(guessed[0] + guessed[1], trial.lower + trial.upper);
    }
}

struct Pair : Window {
    Pair() : Window(pairDialog) {}
    QString besides(int control) {
        return view->findChild<QWidget*>(QStringLiteral("control%1").arg(control))
            ->findChild<QLabel*>()
            ->text();
    }
};

TEST_F(Pair, IsFilledInForAVariableOfTwoCodesAndCanBeSwapped) {
    choose(Qt::Key_2, {4});
    EXPECT_TRUE(std::isnan(code(21))) << "of many values none is chosen";
    empty(1);
    choose(Qt::Key_2, {3});
    EXPECT_EQ(code(21), 1.0);
    EXPECT_EQ(code(22), 0.0);
    EXPECT_EQ(combo(21)->currentText(), "1");
    EXPECT_EQ(besides(21), "dead (filled in)");
    empty(1);
    EXPECT_EQ(besides(21), "") << "there is no variable now";
    choose(Qt::Key_2, {4});
    EXPECT_TRUE(std::isnan(code(21)) && std::isnan(code(22))) << "it is removed with its variable";
    empty(1);
    choose(Qt::Key_2, {3});
    QTest::mouseClick(view->findChild<QToolButton*>("swap"), Qt::LeftButton);
    EXPECT_EQ(code(21), 0.0);
    EXPECT_EQ(code(22), 1.0);
    EXPECT_EQ(besides(21), "alive");
    empty(1);
    choose(Qt::Key_2, {4});
    EXPECT_EQ(code(21), 0.0) << "what the user chose stays";
}

TEST_F(Pair, IsFilledInAndSwappedToTheLastDigit) {
    const double codes[] = {1.0 / 3.0, 2.0 / 3.0}; // shown as 0 and 1
    openCodes({codes[0], codes[1]});
    choose(Qt::Key_2, {1});
    ASSERT_EQ(code(21), codes[0]);
    ASSERT_EQ(code(22), codes[1]);
    QTest::mouseClick(view->findChild<QToolButton*>("swap"), Qt::LeftButton);
    EXPECT_EQ(code(21), codes[1]);
    EXPECT_EQ(code(22), codes[0]);
    EXPECT_EQ(combo(21)->currentText(), "1");
}

TEST_F(Pair, NeverReplacesWhatWasTyped) {
    type("7", 21);
    choose(Qt::Key_2, {3});
    EXPECT_EQ(code(21), 7.0);
    EXPECT_TRUE(std::isnan(code(22))) << "and nothing follows from a code that the variable has not";
    type("0", 21);
    EXPECT_EQ(code(22), 1.0) << "the other one is for the other field";
    type("1", 21);
    EXPECT_EQ(code(22), 0.0) << "still";
    EXPECT_EQ(besides(22), "alive (filled in)");
    type("0", 22);
    EXPECT_EQ(besides(22), "alive") << "the same, and the user's";
    type("5", 22);
    type("0", 21);
    EXPECT_EQ(code(22), 5.0) << "now it is the user's";
    EXPECT_EQ(besides(21), "alive");
    empty(1);
    retype(combo(21)->lineEdit(), "nonsense");
    choose(Qt::Key_2, {3});
    EXPECT_EQ(combo(21)->currentText(), "nonsense") << "not even what cannot be read";
}

TEST_F(Pair, OfPercentIsTakenForAShareWithAWord) {
    auto* level = editor<QLineEdit>(Level);
    auto* note = level->parentWidget()->findChild<QLabel*>("note");
    const auto taken = [&](const char* text) {
        retype(level, text);
        EXPECT_EQ(note->text(), "") << "a note disappears with what it was about";
        QTest::keyClick(level, Qt::Key_Tab);
        return value<double>(Level);
    };
    for (const char* percent : {"95", "95 %", "95.0%"}) {
        EXPECT_EQ(taken(percent), 0.95) << percent;
        EXPECT_EQ(note->text(), QStringLiteral("%1 was read as 0.95.").arg(percent));
        EXPECT_EQ(level->text(), "0.950000");
    }
    EXPECT_EQ(taken("99.9%"), 0.999) << "no tail of rounding";
    for (const double own : {0.9, 1.0, 49.9, -2.0, 100.0}) { // these are for the dialog to judge
        EXPECT_EQ(taken(std::to_string(own).c_str()), own);
        EXPECT_EQ(note->text(), "");
    }
}

} // namespace
} // namespace everykind
