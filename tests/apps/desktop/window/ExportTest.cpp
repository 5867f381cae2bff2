// Files of large results are written while the window lives, and nothing half-made is left by any stop.
#include "tests/apps/desktop/window/OpenWindow.h"
#include "tests/host/results/Books.h"

#include <QElapsedTimer>
#include <QProgressDialog>

#include <filesystem>
#include <random>
#include <set>

namespace korvana::desktop {
namespace {

constexpr int kRows = 100'000;
constexpr qint64 kSoon = 5000; // milliseconds; a second, on a machine that has nothing else to do

ResultsBook largeBook() {
    ResultsBook book;
    book.analysis = "Large";
    book.append(Report{"Summary", std::vector<std::string>(1000, "a line")});
    Spreadsheet sheet;
    sheet.title = "Survival function";
    std::vector<double> times(kRows);
    Spreadsheet::Dictionary status{std::vector<std::uint8_t>(kRows), {"complete", "censored"}};
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

/// Files without a name that the program still holds.
std::ptrdiff_t waitingRows() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return std::count_if(begin(all), end(all), [](const auto& entry) {
        std::error_code gone;
        return std::filesystem::read_symlink(entry.path(), gone).string().ends_with("(deleted)");
    });
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

    /// Exports into a folder; whether it was stopped by what is done after some milliseconds.
    bool stoppedBy(const std::function<void()>& stop, int after, FormatSet formats, const char* into = "") {
        QStringList problems;
        bool stopped = false;
        QElapsedTimer sinceStop;
        QTimer timer;
        timer.setSingleShot(true);
        QObject::connect(&timer, &QTimer::timeout, [&] {
            sinceStop.start();
            stop();
        });
        timer.start(after);
        window->workbook().writeRun(run, place() / into, formats, problems, &stopped);
        EXPECT_TRUE(problems.isEmpty()) << problems.join('\n').toStdString();
        EXPECT_FALSE(stopped && sinceStop.elapsed() > kSoon) << sinceStop.elapsed();
        return stopped;
    }
    static void cancel() {
        for (QWidget* each : QApplication::topLevelWidgets())
            if (auto* sign = qobject_cast<QProgressDialog*>(each)) sign->findChild<QPushButton*>()->click();
    }

    inline static std::shared_ptr<const ResultsBook> large;
    int run = 0;
};

TEST_F(ExportTest, AStopAtAnyMomentLeavesTheFolderAsItWas) {
    constexpr int stopsOfEach = 3;
    std::mt19937 random(17);
    int stops = 0;
    for (std::size_t format = 0; format < kOutputFormats; ++format) {
        QElapsedTimer whole;
        whole.start();
        EXPECT_FALSE(stoppedBy([] {}, 0, FormatSet{}.add(static_cast<OutputFormat>(format))));
        const auto most = static_cast<int>(whole.elapsed());
        const std::set<std::string> before = filesIn(place());
        for (int part = 0; part < stopsOfEach; ++part) {
            // In every part of that time, also the last one, in which a workbook is packed.
            const int after = (most * part + static_cast<int>(random() % 100) * most / 100) / stopsOfEach;
            const bool stopped = stoppedBy(cancel, after, FormatSet{}.add(static_cast<OutputFormat>(format)),
                                           part == 0 ? "" : "new/deep");
            EXPECT_TRUE(!stopped || filesIn(place()) == before) << format << " after " << after;
            std::filesystem::remove_all(place() / "new");
            stops += stopped ? 1 : 0;
        }
    }
    // What a stop left to be packed comes to its end.
    EXPECT_TRUE(QTest::qWaitFor([] { return waitingRows() == 0; }, 60000)) << waitingRows();
    EXPECT_GT(stops, 5) << "hardly anything was stopped";
}

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

TEST_F(ExportTest, ClosingAndTheEndOfTheProgramStopIt) {
    const auto stops = [this](const std::function<void()>& way) {
        EXPECT_TRUE(stoppedBy(way, 200, FormatSet::all()));
        EXPECT_EQ(filesIn(place()), std::set<std::string>{"theirs.txt"});
    };
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
