#include <QApplication>
#include <gtest/gtest.h>

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&count, arguments);
    const QApplication application(count, arguments);
    return RUN_ALL_TESTS();
}
