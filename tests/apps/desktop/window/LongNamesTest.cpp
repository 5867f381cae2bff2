// Names and labels of any length: none makes a window too wide, and those that begin alike can be told apart.

#include "apps/desktop/text/ElidedLabel.h"
#include "apps/desktop/text/FixedFont.h"
#include "apps/desktop/text/WrappedLabel.h"
#include "tests/apps/desktop/window/OpenWindow.h"

namespace korvana::desktop {
namespace {

constexpr int letters = 300;
const QSize smallScreen(800, 560); // less a frame and a panel

struct LongNames : WindowTest {
    static QByteArray named(char first) { return first + QByteArray(letters - 2, '_') + first; }
    void SetUp() override {
        WindowTest::SetUp();
        QByteArray text = named('t') + ',' + named('s') + ',' + named('g') + '\n';
        for (int i = 1; i <= 12; ++i)
            text += QByteArray::number(i) + ',' + QByteArray::number(i % 3 == 0 ? 0 : 1) + ',' +
                    QByteArray::number(1 + i % 2) + '\n';
        ASSERT_TRUE(window->openFile(folder.write("long.csv", text)));
        runner().data().describe(1, "", {}, {{0, named('c').data()}, {1, named('d').data()}});
        runner().data().describe(2, "", {}, {{1, named('a').data()}, {2, named('b').data()}});
        runner().data().select((named('t') + " > 0").data());
        runner().dataChanged();
        window->resize(smallScreen);
    }
    void fits(QWidget& whole) {
        QApplication::processEvents();
        EXPECT_LE(whole.minimumSizeHint().height(), smallScreen.height())
            << whole.windowTitle().toStdString();
        QList<QWidget*> all = whole.findChildren<QWidget*>();
        all += &whole;
        for (const QWidget* each : std::as_const(all))
            EXPECT_LE(each->minimumSizeHint().width(), smallScreen.width())
                << each->metaObject()->className() << ' ' << each->objectName().toStdString() << " in "
                << whole.windowTitle().toStdString();
    }
};

TEST_F(LongNames, MakeNoWindowTooWide) {
    fits(*window);
    window->startAnalysis();
    fits(*view());
    put(180, 2);
    click("OK");
    put(1001, ozm::VariableSelection{{1}, {2}, {3}});
    const double codes[] = {1, 0, 1, 2};
    for (int i = 0; i < 4; ++i)
        put(1002 + i, codes[i]);
    view()->resize(view()->sizeHint());
    fits(*view());
    for (const QScrollArea* area : view()->findChildren<QScrollArea*>())
        EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
    QStringList seen;
    for (int control = 1002; control <= 1005; ++control) {
        const auto* field = view()->findChild<QWidget*>(QStringLiteral("control%1").arg(control));
        for (const QLabel* label : field->findChildren<QLabel*>())
            if (const auto* elided = dynamic_cast<const ElidedLabel*>(label)) seen += elided->shownText();
    }
    EXPECT_EQ(seen.size(), 4);
    EXPECT_EQ(seen.removeDuplicates(), 0) << seen.join('\n').toStdString();
    click("OK");
    fits(*view());
    for (QPushButton* button : view()->findChildren<QPushButton*>()) {
        const QString text = button->text().remove('&');
        if (button->isVisible() && text != "Cancel" && !text.contains("Select") && !text.contains("Weights"))
            button->click();
        fits(*window);
    }
    ASSERT_GT(book()->outputs.size(), 3U);
    for (int place = 0; place < static_cast<int>(book()->outputs.size()); ++place) {
        window->workbook().showOutput(window->workbook().currentRun(), place);
        fits(*window);
        for (const QPlainTextEdit* report : window->workbook().findChildren<QPlainTextEdit*>())
            EXPECT_EQ(QFontInfo(report->font()).family(), QFontInfo(fixedFont()).family());
    }
    EXPECT_TRUE(QFontInfo(fixedFont()).fixedPitch()) << "also where no font is installed";
}

TEST_F(LongNames, FitMessageBoxesAndAreCopiedFromThem) {
    const QString path = folder.path(QString(200, 'x') + "/gone.csv");
    answering([&] { EXPECT_FALSE(window->openFile(path)); },
              [&](QMessageBox& box) {
                  fits(box);
                  auto* text = box.findChild<QLabel*>("qt_msgbox_label");
                  text->setSelection(0, static_cast<int>(text->text().size()));
                  QTest::keyClick(text, Qt::Key_C, Qt::ControlModifier);
                  EXPECT_TRUE(QApplication::clipboard()->text().contains(path));
                  box.accept();
              });
    window->startAnalysis();
    put(180, 1);
    click("OK");
    put(1001, ozm::VariableSelection{{1}, {2}});
    put(1002, 5.0);
    put(1003, 6.0);
    answering([&] { click("OK"); },
              [&](QMessageBox& box) {
                  EXPECT_TRUE(textOf(box).contains(named('s'))) << textOf(box).toStdString();
                  fits(box);
                  box.accept();
              });
}

TEST_F(LongNames, AreCopiedAsTheyAre) {
    WrappedLabel label;
    const QString text = "read from " + QString::fromLatin1(named('x')) + " alone";
    label.setTextInteractionFlags(Qt::TextSelectableByMouse);
    label.setText(text);
    label.show();
    label.setFocus();
    label.setSelection(0, static_cast<int>(label.QLabel::text().size()));
    label.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&label));
    QTest::keyClick(&label, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), text);
    EXPECT_LT(label.minimumSizeHint().width(), 30 * label.fontMetrics().averageCharWidth());
}

} // namespace
} // namespace korvana::desktop
