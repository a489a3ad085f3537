// The windows' tests run inside one QApplication on the offscreen platform.
#include "ui/MarvekApplication.h"

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    // Tests meet the windows offscreen unless told otherwise.
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    marvek::MarvekApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
