#include <QApplication>

#include <gtest/gtest.h>

// Screen tests need one QApplication for the whole run; logic tests never do.
int main(int argc, char** argv) {
    // Screens are tested without a display, also when CTest lists the tests.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
