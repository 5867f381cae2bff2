#include "apps/desktop/data/DataLoader.h"

#include "apps/desktop/data/OpenOptionsDialog.h"
#include "apps/desktop/data/RecentFiles.h"
#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/data/Trial.h"

#include <sys/stat.h>

namespace korvana::desktop {
namespace {

QByteArray manyRows(int rows) {
    QByteArray text("a,b,c\n");
    for (int i = 0; i < rows; ++i)
        text += QByteArray::number(i) + ",some text that is read twice,3.5\n";
    return text;
}

struct Signals {
    explicit Signals(const DataLoader& loader)
        : loaded(&loader, &DataLoader::loaded), failed(&loader, &DataLoader::failed),
          cancelled(&loader, &DataLoader::cancelled) {}
    qsizetype count() const { return loaded.size() + failed.size() + cancelled.size(); }

    QSignalSpy loaded;
    QSignalSpy failed;
    QSignalSpy cancelled;
};

TEST(DataLoader, ReportsOnceHowALoadEnded) {
    const Folder folder;
    DataLoader loader;
    Signals told(loader);
    loader.load(folder.write("small.csv", "a\n1\n2\n"));
    EXPECT_TRUE(loader.isLoading());
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.count() > 0; }));
    EXPECT_EQ(told.loaded.size(), 1);
    EXPECT_EQ(loader.take()->caseCount(), 2);

    loader.load(folder.write("torn.csv", "a,b\n1,2\n3\n"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.failed.size() == 1; }));
    EXPECT_TRUE(told.failed.at(0).at(0).toString().contains("torn.csv:3:"));

    loader.load(folder.write("big.csv", manyRows(300'000)));
    loader.cancel();
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.count() == 3; }));
    // A load may have ended just before it was cancelled; either way, the data agree.
    EXPECT_EQ(told.cancelled.size(), loader.take().has_value() ? 0 : 1);

    loader.load(folder.path("big.csv"));
    loader.load(folder.path("small.csv"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return told.count() == 4; }));
    EXPECT_EQ(loader.take()->caseCount(), 2);
    const QString pipe = folder.path("pipe"); // nobody writes into it
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    loader.load(pipe);
    EXPECT_FALSE(loader.wait(20));
    loader.cancel();
    EXPECT_TRUE(loader.wait(5000));
    loader.load(folder.path("big.csv")); // and goes away
}

TEST(OpenDataFile, KeepsThePreviousDataWhenItFails) {
    const Folder folder;
    ActiveData data;
    openTrial(data);
    data.select("age > 60");
    ReadFault fault;
    EXPECT_FALSE(openDataFile(data, folder.path("gone.csv"), &fault));
    EXPECT_TRUE(fault.text.contains("gone.csv: there is no such file")) << fault.text.toStdString();
    EXPECT_EQ(data.selectedCount(), 2);

    EXPECT_TRUE(openDataFile(data, folder.write(QStringLiteral("\u00e4 b.csv"), "a\n1\n"), &fault));
    EXPECT_EQ(fault.text, "");
    EXPECT_EQ(data.condition(), "");
}

/// Opens a big file and does something to the progress dialog. A fast machine may finish before that is
/// shown: returns whether it was.
bool whileReading(ActiveData& data, QWidget* parent, const std::function<void(QProgressDialog&)>& action) {
    const Folder folder;
    const QString file = folder.write("big.csv", manyRows(1'000'000));
    openTrial(data);
    bool seen = false;
    QTimer pulse;
    QObject::connect(&pulse, &QTimer::timeout, [&] {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* const busy = qobject_cast<QProgressDialog*>(widget);
            if (seen || busy == nullptr || !busy->isVisible()) continue;
            seen = true;
            action(*busy);
        }
    });
    pulse.start(1);
    ReadFault fault{"as before"};
    const bool read = openDataFile(data, file, &fault, parent);
    EXPECT_EQ(fault.text, "");
    EXPECT_TRUE(read || seen);
    EXPECT_EQ(data.dataSet().caseCount(), read ? 1'000'000 : 4);
    return seen;
}

TEST(OpenDataFile, ABigFileCanBeCancelledAndTheWindowClosedMeanwhile) {
    ActiveData data;
    whileReading(data, nullptr, [](QProgressDialog& busy) { busy.cancel(); });
    QWidget window;
    window.show();
    const bool closed = whileReading(data, &window, [&](QProgressDialog&) {
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "a request to close would be dropped";
        EXPECT_FALSE(window.close()); // not while it is reading
    });
    QApplication::processEvents();
    EXPECT_EQ(window.isVisible(), !closed);
}

TEST(OpenDataFile, TheOrderOfDatesIsAskedForIfAmbiguous) {
    const Folder folder;
    const QString file = folder.write("dates.csv", "id,begin\n1,02/03/1995\n2,04/05/1995\n");
    const auto opened = [&](const QString& answer) {
        ActiveData data;
        ReadFault fault{"as before"};
        bool read = false;
        answering([&] { read = openDataFile(data, file, &fault); },
                  [&](QMessageBox& box) {
                      EXPECT_TRUE(textOf(box).contains("begin")) << textOf(box).toStdString();
                      for (QAbstractButton* button : box.buttons())
                          if (button->text().remove('&').startsWith(answer)) button->click();
                  });
        EXPECT_EQ(fault.text, "");
        return read ? data.dataSet().column(1)[1] - data.dataSet().column(1)[0] : -1.0;
    };
    EXPECT_EQ(opened("Day"), 63.0);   // 2 March to 4 May
    EXPECT_EQ(opened("Month"), 61.0); // 3 February to 5 April
    EXPECT_EQ(opened("Cancel"), -1.0);
}

TEST(OpenDataFile, OptionsSayHowItIsRead) {
    const Folder folder;
    const QString file = folder.write("trial.txt", "1/61,5/01-02-1995\n2/60.5/03-04-1995\n");
    ActiveData data;
    ReadFault fault;
    const ReadOptions none;
    const ReadOptions all{HeaderLine::No, '/', ',', DateOrder::MonthDayYear};
    for (const ReadOptions& options : {all, none}) {
        const ReadOptions shown = OpenOptionsDialog(file, options).options();
        EXPECT_EQ(shown.header, options.header);
        EXPECT_EQ(shown.separator, options.separator);
        EXPECT_EQ(shown.decimalMark, options.decimalMark);
        EXPECT_EQ(shown.dates, options.dates);
    }
    OpenOptionsDialog dialog(file, none);
    const auto choose = [&](const char* field, int value) {
        auto* box = dialog.findChild<QComboBox*>(field);
        box->setCurrentIndex(box->findData(value));
    };
    dialog.show();
    auto* separator = dialog.findChild<QComboBox*>("separator");
    const auto* said = dialog.findChild<QLabel*>("fault");
    QTest::keyClick(separator, Qt::Key_End); // another character
    EXPECT_EQ(dialog.focusWidget(), dialog.findChild<QLineEdit*>("sign"));
    for (const char* wrong : {"", "\u20ac"}) {
        dialog.findChild<QLineEdit*>("sign")->setText(wrong);
        dialog.accept();
        EXPECT_TRUE(dialog.isVisible() && said->isVisible() && said->text().contains("character")) << wrong;
    }
    dialog.findChild<QLineEdit*>("sign")->setText("/");
    EXPECT_FALSE(said->isVisible());
    choose("decimal", ',');
    choose("header", static_cast<int>(HeaderLine::No));
    choose("dates", static_cast<int>(DateOrder::MonthDayYear));
    dialog.accept();
    ASSERT_TRUE(openDataFile(data, file, &fault, nullptr, dialog.options())) << fault.text.toStdString();
    EXPECT_EQ(data.dataSet().variable(1).kind, VariableKind::Text) << "60.5 is no number then";
    EXPECT_EQ(data.dataSet().column(2)[1] - data.dataSet().column(2)[0], 61.0);
}

TEST(RecentFiles, NewestFirstAndRememberedOnce) {
    const Folder folder;
    const QString settings = folder.path("settings.ini");
    QMenu menu;
    {
        RecentFiles recent(settings);
        for (int i = 0; i < RecentFiles::most + 3; ++i)
            recent.add(QStringLiteral("/data/%1/trial & error.csv").arg(i));
        recent.add("/data/5/../5/trial & error.csv");
        recent.add("relative.csv");
        recent.remove("/data/12/trial & error.csv");
    }
    RecentFiles recent(settings);
    EXPECT_EQ(recent.files().size(), RecentFiles::most - 1);
    EXPECT_EQ(recent.files().at(0), QDir::current().absoluteFilePath("relative.csv"));
    EXPECT_EQ(recent.files().at(1), "/data/5/trial & error.csv");

    QString opened;
    recent.fill(menu, [&](const QString& path) { opened = path; });
    EXPECT_TRUE(menu.actions().at(1)->text().contains("trial && error.csv \u2013 /data/5"));
    menu.actions().at(1)->trigger();
    EXPECT_EQ(opened, "/data/5/trial & error.csv");
    menu.actions().back()->trigger();
    EXPECT_TRUE(recent.files().isEmpty());
}

} // namespace
} // namespace korvana::desktop
