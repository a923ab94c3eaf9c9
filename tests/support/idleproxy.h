// SPDX-License-Identifier: MIT
#pragma once

// What every proxy popup of a drag or an arrow is before it is shown: a frameless
// popup of one transparent pixel at (0, 0), hidden and not tracking the mouse, so that
// showing it takes the mouse without anything to see.

#include <QPoint>
#include <QSize>
#include <QWidget>
#include <QtTest>

namespace KelTest {

/** Checks @p proxy as a test step; on a mismatch the test has failed when this returns. */
inline void VerifyIdleProxy(const QWidget &proxy)
{
    QVERIFY(proxy.windowFlags() & Qt::Popup);
    QVERIFY(proxy.windowFlags() & Qt::FramelessWindowHint);
    QCOMPARE(proxy.windowOpacity(), 0.0);
    QVERIFY(!proxy.hasMouseTracking());
    QCOMPARE(proxy.size(), QSize(1, 1));
    QCOMPARE(proxy.pos(), QPoint(0, 0));
    QVERIFY(proxy.isHidden());
}

} // namespace KelTest
