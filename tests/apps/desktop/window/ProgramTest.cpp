// The program as a process of its own: how it ends, and where it keeps what it remembers.

#include "tests/apps/desktop/Modals.h"
#include "tests/apps/desktop/data/Trial.h"

#include <csignal>
#include <sys/resource.h>

namespace korvana::desktop {
namespace {

struct Program : testing::Test {
    /// Starts it with a data file, and returns once it has remembered that, or tried to. By then it listens
    /// to signals.
    void start(const Folder& home, bool limited = false) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("HOME", home.path(""));
        environment.remove("XDG_CONFIG_HOME");
        process.setProcessEnvironment(environment);
        if (limited)
            process.setChildProcessModifier([] {
                const rlimit none{0, 0};
                ::setrlimit(RLIMIT_FSIZE, &none);
            });
        process.start(QCoreApplication::applicationDirPath() + "/korvana-desktop",
                      {QStringLiteral(KORVANA_SOURCE_DIR "/examples/data/aml.csv")});
        ASSERT_TRUE(process.waitForStarted());
        const auto remembers = [&] {
            if (limited) return QFile::exists(home.path(".config/korvana"));
            return QSettings(home.path(settings), QSettings::IniFormat).contains("recentFiles");
        };
        EXPECT_TRUE(QTest::qWaitFor(remembers, 20000));
        ASSERT_EQ(process.state(), QProcess::Running) << process.exitStatus();
    }
    void end(int number) {
        kill(static_cast<pid_t>(process.processId()), number);
        EXPECT_TRUE(process.waitForFinished(10000)) << number;
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << number;
        EXPECT_EQ(process.exitCode(), 128 + number);
    }

    static constexpr const char* settings = ".config/korvana/korvana-desktop.ini";
    QProcess process;
};

TEST_F(Program, ASignalEndsItWithTheUsualExitCodeAndALimitOnFilesDoesNot) {
    for (const auto& [number, limited] :
         {std::pair{SIGTERM, false}, {SIGHUP, false}, {SIGINT, false}, {SIGTERM, true}}) {
        const Folder home;
        ASSERT_NO_FATAL_FAILURE(start(home, limited));
        end(number);
    }
}

TEST_F(Program, KeepsItsSettingsInOneFileWithThoseOfEarlierVersions) {
    const Folder home;
    const QDir config(home.path(".config"));
    for (const char* folder : {"Korvana", "korvana"})
        ASSERT_TRUE(config.mkpath(folder));
    home.write(".config/Korvana/korvana-desktop.conf", "[export]\nfolder=/earlier\nhtml=false\n");
    home.write(settings, "[export]\nhtml=true\n");
    ASSERT_NO_FATAL_FAILURE(start(home));
    end(SIGTERM);
    const QSettings kept(home.path(settings), QSettings::IniFormat);
    EXPECT_EQ(kept.value("export/folder"), "/earlier");
    EXPECT_EQ(kept.value("export/html"), "true") << "the newer one holds";
    EXPECT_EQ(kept.value("recentFiles").toStringList().size(), 1);
    QStringList folders = config.entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    folders.removeAll("QtProject.conf"); // of Qt's own dialogs
    EXPECT_EQ(folders, QStringList{"korvana"});
}

} // namespace
} // namespace korvana::desktop
