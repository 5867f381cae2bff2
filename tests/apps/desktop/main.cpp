#include "tests/apps/desktop/Modals.h"

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Not on the user's screen, unless one was made for the tests.
    qputenv("QT_QPA_PLATFORM", qEnvironmentVariable("KORVANA_TEST_PLATFORM", "offscreen").toLatin1());
    QApplication application(argc, argv);
    const QTemporaryDir settings; // used only by the tests
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings.path());
    QApplication::setOrganizationName("korvana-tests");
    QApplication::setApplicationName("desktop");
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    const korvana::desktop::ModalWatch watch;
    return RUN_ALL_TESTS();
}
