// SPDX-License-Identifier: MIT
#pragma once

// The fixture of the scrolling-bar tests that give each test's bar a window of its
// own: every test starts at scale 1.0, and ends with its window gone, the deferred
// deletions run and no popup left holding the mouse, so that the next test starts
// from nothing.

#include "dpitool.h"
#include "tabbarextestbar.h"

#include <QApplication>
#include <QObject>
#include <QWidget>
#include <QtTest>

#include <memory>

class BarWindowTest : public QObject
{
    Q_OBJECT

protected:
    /** The window of the test's bar; resetting it deletes the bar, as a host closing its window. */
    std::unique_ptr<QWidget> m_window;

    /**
     * A new window holding a new, empty @p Bar, the window as large as the bar, which
     * leaves @p designAvailable design pixels (scaled) for the scrolling tabs next to
     * fixed tabs @p fixedDesignWidth wide. The previous window and its bar go.
     */
    template <typename Bar>
    Bar *NewBarInWindow(int designAvailable, int fixedDesignWidth = 84)
    {
        m_window.reset(new QWidget);
        auto *bar = new Bar(m_window.get());
        bar->resize(TabTest::BarWidthFor(designAvailable, fixedDesignWidth), bar->ButtonBarHeight());
        m_window->resize(bar->size());
        return bar;
    }

    /** Before each test, after the scale is set: what the test case also wants reset. */
    virtual void PrepareTest() {}
    /**
     * After each test, before its window goes: closes what a test may leave open on
     * purpose (a drag stopped halfway). Whatever popup is still up after that fails the test.
     */
    virtual void CloseLeftovers() {}

private Q_SLOTS:
    void init()
    {
        DpiTool::SetScaleFactor(1.0);
        PrepareTest();
    }

    void cleanup()
    {
        CloseLeftovers();
        m_window.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(QApplication::activePopupWidget(), static_cast<QWidget *>(nullptr));
    }

    void cleanupTestCase() { TabTest::EndTestCase(); }
};
