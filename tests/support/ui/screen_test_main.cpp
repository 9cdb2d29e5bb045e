#include <QApplication>

#include <gtest/gtest.h>

// Screen tests need one QApplication for the whole run; logic tests never do.
int main(int argc, char** argv) {
    QApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
