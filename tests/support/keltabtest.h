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
