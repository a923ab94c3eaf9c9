// SPDX-License-Identifier: MIT
#pragma once

// Shared by every test executable of the suite.

#include "dpitool.h"
#include "windowsystem_p.h"

#include <QApplication>
#include <QtTest>

#include <cstdio>

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

// Positions the bar tests check are logical: x counts from the start of the parent,
// which is its right edge when the parent is laid out right to left. Each such test
// then runs in both directions (tests/CMakeLists.txt, MIRRORED) with the same numbers.

/** @p widget's geometry in its parent, x counted from the parent's start. */
inline QRect LogicalGeometry(const QWidget *widget)
{
    QRect rect = widget->geometry();
    const QWidget *parent = widget->parentWidget();
    if (parent && parent->isRightToLeft())
        rect.moveLeft(parent->width() - rect.x() - rect.width());
    return rect;
}

inline QPoint LogicalPos(const QWidget *widget)
{
    return LogicalGeometry(widget).topLeft();
}

inline int LogicalX(const QWidget *widget)
{
    return LogicalGeometry(widget).x();
}

/** The pixel of @p widget at logical @p pos: mirrored in a right-to-left widget. */
inline QPoint VisualPoint(const QWidget *widget, const QPoint &pos)
{
    return widget->isRightToLeft() ? QPoint(widget->width() - 1 - pos.x(), pos.y()) : pos;
}

/** The rectangle of @p widget at logical @p rect: mirrored in a right-to-left widget. */
inline QRect VisualRect(const QWidget *widget, QRect rect)
{
    if (widget->isRightToLeft())
        rect.moveLeft(widget->width() - rect.x() - rect.width());
    return rect;
}

/** The rectangle of @p widget in its ancestor @p ancestor, x from the ancestor's start. */
inline QRect LogicalRectIn(const QWidget *widget, const QWidget *ancestor)
{
    return VisualRect(ancestor, QRect(widget->mapTo(ancestor, QPoint(0, 0)), widget->size()));
}

/**
 * The point a menu was opened at: its top-left corner, or right to left its top-right
 * one (Qt opens a menu leftwards from the point there).
 */
inline QPoint MenuAnchor(const QWidget *menu)
{
    const QRect rect = menu->geometry();
    return menu->isRightToLeft() ? QPoint(rect.right() + 1, rect.top()) : rect.topLeft();
}

/** A horizontal movement of @p dx towards the end of @p widget's strip, on the screen. */
inline int Forward(const QWidget *widget, int dx)
{
    return widget->isRightToLeft() ? -dx : dx;
}

/** The column of a data-driven test that runs at more than one scale factor: "scale". */
inline void AddScaleColumn()
{
    QTest::addColumn<double>("scale");
}

/** For tests that take nothing but the scale factor: one row at 1.0, one at 1.5. */
inline void AddBothScales()
{
    AddScaleColumn();
    QTest::newRow("1.0") << 1.0;
    QTest::newRow("1.5") << 1.5;
}

/** Sets the scale factor to the current row's "scale" and returns it. */
inline double UseRowScale()
{
    QFETCH(double, scale);
    DpiTool::SetScaleFactor(scale);
    return scale;
}

/**
 * Whether @p test cannot run on this platform, said on the output: a test that places
 * the pointer with QCursor::setPos (it says so with Q_CLASSINFO("SetsThePointer", ...))
 * cannot run as a Wayland client, which can neither set nor read the pointer's place.
 */
inline bool SkipsOnThisPlatform(const QMetaObject &test)
{
    if (test.indexOfClassInfo("SetsThePointer") < 0 || !WindowSystem::IsWayland())
        return false;
    std::printf("SKIP   : %s places the pointer with QCursor::setPos, which a Wayland client cannot do;"
                " it runs on X11 (the suite runs it under xvfb-run)\n",
                test.className());
    return true;
}

} // namespace KelTest

/** main() for a widget test: QApplication, headless default, isolated standard paths. */
#define KELTAB_TEST_MAIN(TestObject)                         \
    int main(int argc, char *argv[])                         \
    {                                                        \
        KelTest::PrepareEnvironment();                       \
        QApplication::setAttribute(Qt::AA_Use96Dpi, true);   \
        QApplication app(argc, argv);                        \
        if (KelTest::SkipsOnThisPlatform(TestObject::staticMetaObject)) \
            return 0;                                        \
        TestObject tc;                                       \
        QTEST_SET_MAIN_SOURCE_PATH                           \
        return QTest::qExec(&tc, argc, argv);                \
    }
