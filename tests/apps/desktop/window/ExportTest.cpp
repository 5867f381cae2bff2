// Files of large results are written while the window responds, and no way of stopping leaves partial files.
#include "apps/desktop/results/ExportDialog.h"
#include "tests/apps/desktop/window/OpenWindow.h"
#include "tests/host/results/Books.h"

#include <QElapsedTimer>
#include <QProgressDialog>

#include <filesystem>
#include <set>

namespace korvana::desktop {
namespace {

constexpr int rows = 100'000;
constexpr qint64 soon = 5000; // milliseconds; a second, on a machine that has nothing else to do

ResultsBook largeBook() {
    ResultsBook book;
    book.analysis = "Large";
    book.append(Report{"Summary", std::vector<std::string>(1000, "a line")});
    Spreadsheet sheet;
    sheet.title = "Survival function";
    std::vector<double> times(rows);
    Spreadsheet::Dictionary status{std::vector<std::uint8_t>(rows), {"complete", "censored"}};
    for (std::size_t row = 0; row < times.size(); ++row) {
        times[row] = static_cast<double>(row) / 7.0;
        status.index[row] = row % 3 == 0 ? 1 : 0;
    }
    for (const char* heading : {"Time", "Survival", "Error"})
        sheet.columns.push_back({heading, "", {}, times});
    sheet.columns.push_back({"Status", "", {}, std::move(status)});
    book.append(std::move(sheet));
    book.append(Chart{test::stepChart()});
    return book;
}

std::set<std::string> filesIn(const std::filesystem::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.insert(entry.path().filename().string());
    return names;
}

class ExportTest : public WindowTest {
protected:
    static void SetUpTestSuite() { large = std::make_shared<const ResultsBook>(largeBook()); }
    static void TearDownTestSuite() { large.reset(); }
    void SetUp() override {
        WindowTest::SetUp();
        run = window->workbook().addRun(large, "Large");
        std::filesystem::create_directory(place());
        folder.write("out/theirs.txt", "theirs");
    }
    std::filesystem::path place() const { return folder.path("out").toStdString(); }

    /// Exports everything, does something after a while, and expects that this stops the export without a
    /// trace.
    void stops(const std::function<void()>& way, const char* into = "") {
        QElapsedTimer sinceStop;
        QTimer::singleShot(200, window.get(), [&] {
            sinceStop.start();
            way();
        });
        QStringList problems;
        bool stopped = false;
        window->workbook().writeRun(run, place() / into, FormatSet::all(), problems, &stopped);
        EXPECT_TRUE(stopped);
        EXPECT_LT(sinceStop.elapsed(), soon);
        EXPECT_TRUE(problems.isEmpty()) << problems.join('\n').toStdString();
        EXPECT_EQ(filesIn(place()), std::set<std::string>{"theirs.txt"});
    }
    static void cancel() {
        for (QWidget* each : QApplication::topLevelWidgets())
            if (auto* sign = qobject_cast<QProgressDialog*>(each)) sign->findChild<QPushButton*>()->click();
    }

    inline static std::shared_ptr<const ResultsBook> large;
    int run = 0;
};

TEST_F(ExportTest, TheWindowRepaintsAndSaysWhichFileIsWritten) {
    QString said;
    int painted = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        window->repaint();
        ++painted;
        for (QWidget* each : QApplication::topLevelWidgets())
            if (auto* sign = qobject_cast<QProgressDialog*>(each); sign != nullptr && sign->isVisible())
                said += sign->labelText();
    });
    timer.start(10);
    QStringList problems;
    EXPECT_GT(window->workbook().writeRun(run, place(), FormatSet{}.add(OutputFormat::Xlsx), problems), 0U);
    EXPECT_GT(painted, 10);
    EXPECT_TRUE(said.contains("results.xlsx")) << said.toStdString();
    EXPECT_EQ(window->workbook().unsaved(), 1) << "the chart";
}

TEST_F(ExportTest, EveryWayToStopLeavesTheFolderAsItWas) {
    stops(cancel);
    stops(cancel, "new/deep");
    stops([this] { EXPECT_FALSE(window->close()); });
    answering([] {}, pressing(QMessageBox::Discard)); // the results are lost
    EXPECT_TRUE(QTest::qWaitFor([this] { return !window->isVisible(); }));
    QTimer::singleShot(0, window.get(), [&] {
        stops([this] {
            window->abandon(); // as a signal does
            QCoreApplication::exit(143);
        });
    });
    EXPECT_EQ(QApplication::exec(), 143);
}

} // namespace
} // namespace korvana::desktop
