// SPDX-License-Identifier: MIT
#pragma once

// Shared by every test executable of the suite.

#include <QApplication>
#include <QtTest>

namespace KelTest {

// Runs before QApplication exists: headless by default, and QStandardPaths in its
// test mode so that nothing touches the real user's settings or caches.
inline void PrepareEnvironment()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Pixel numbers are checked at a device pixel ratio of 1, with the library's own
    // scale (DpiTool) set by each test. Qt 6 always applies a scale factor, so one
    // from the environment would change every number there, and on Qt 5 too.
    for (const char *name : {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR",
                             "QT_ENABLE_HIGHDPI_SCALING", "QT_SCALE_FACTOR_ROUNDING_POLICY",
                             "QT_USE_PHYSICAL_DPI", "QT_FONT_DPI"})
        qunsetenv(name);
    QStandardPaths::setTestModeEnabled(true);
}

} // namespace KelTest

/** main() for a widget test: QApplication, headless default, isolated standard paths. */
#define KELTAB_TEST_MAIN(TestObject)                         \
    int main(int argc, char *argv[])                         \
    {                                                        \
        KelTest::PrepareEnvironment();                       \
        QApplication::setAttribute(Qt::AA_Use96Dpi, true);   \
        QApplication app(argc, argv);                        \
        TestObject tc;                                       \
        QTEST_SET_MAIN_SOURCE_PATH                           \
        return QTest::qExec(&tc, argc, argv);                \
    }
