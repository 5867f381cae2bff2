#include "apps/desktop/window/MainWindow.h"
#include "apps/desktop/window/TerminationSignals.h"
#include "apps/desktop/window/UserSettings.h"
#include "host/charts/ChartFonts.h"
#include "host/results/StandardFiles.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QTimer>

#include <algorithm>
#include <clocale>
#include <csignal>
#include <string_view>

namespace {

/// Questions that need no screen are answered without one.
bool asksForText(int argc, char* argv[]) {
    return std::any_of(argv + 1, argv + std::max(argc, 1), [](std::string_view word) {
        return word == "--help" || word == "-h" || word == "--version" || word == "-v";
    });
}

/// Called by the loader before the libraries are made ready, which open files of their own.
[[gnu::section(".preinit_array"), gnu::used]] void (*const beforeAll)() = korvana::holdStandardFiles;

} // namespace

int main(int argc, char* argv[]) {
    // A limit to the size of files is an error of the write, like a full disk.
    std::signal(SIGXFSZ, SIG_IGN);
    if (asksForText(argc, argv)) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    korvana::useChartFontWhereThereIsNone();
    // Numbers in files are written with a point, whatever the user's locale.
    std::setlocale(LC_NUMERIC, "C");
    korvana::desktop::useUserSettings();
    QApplication::setApplicationVersion(QStringLiteral(KORVANA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("korvana-desktop"));

    QApplication::setWindowIcon(QIcon(QStringLiteral(":/korvana.svg")));

    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::tr("Data, analyses and their results in a window."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(QStringLiteral("DATA"), QApplication::tr("a data file to open"),
                                 QStringLiteral("[DATA]"));
    parser.process(application);

    korvana::Analysis analysis;
    QString noAnalysis;
    try {
        analysis = korvana::loadAnalysis(korvana::findModules());
    } catch (const korvana::ModuleError& error) {
        noAnalysis = QString::fromUtf8(error.what());
    }
    korvana::desktop::MainWindow window(std::move(analysis), noAnalysis);
    const korvana::desktop::TerminationSignals termination;
    QObject::connect(&termination, &korvana::desktop::TerminationSignals::received, &window, [&](int number) {
        window.abandon();
        QCoreApplication::exit(128 + number);
    });
    window.show();
    // Once events are handled, so that reading the file can be stopped.
    if (const QStringList files = parser.positionalArguments(); !files.isEmpty())
        QTimer::singleShot(0, &window, [&window, file = files.constFirst()] { window.openFile(file); });
    return QApplication::exec();
}
