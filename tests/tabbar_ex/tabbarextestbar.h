// SPDX-License-Identifier: MIT
#pragma once

// A host-like subclass of the extended bar for the tests of tests/tabbar_ex: its fixed
// tabs, close policy and icons are set from the test, and the protected layout
// operations are re-exported.

#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "keltabtest.h"
#include "tabdata.h"
#include "tabrecord.h"
#include "vosimagecache.h"

#include <QApplication>
#include <QCursor>
#include <QColor>
#include <QFrame>
#include <QImage>
#include <QMouseEvent>
#include <QList>
#include <QMoveEvent>
#include <QPair>
#include <QPoint>
#include <QString>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <memory>

class TestTabBarEx : public BrowserTabBarEx
{
public:
    explicit TestTabBarEx(QWidget *parent = nullptr)
        : BrowserTabBarEx(parent)
    {
    }

    // What the tests read of the bar's state, taken from what a host can see: the
    // frames' geometry and visibility, the named timers.

    /** The button of a tab, as the scrolling bar's own type. */
    BrowserTabButtonEx *TabButton(int index) const
    {
        return static_cast<BrowserTabButtonEx *>(BrowserTabBarEx::TabButton(index));
    }
    /** The content strip's x inside the viewport: 0 or negative. */
    int ScrollOffset() const { return KelTest::LogicalX(Content()); }
    /**
     * True when the scrolling tabs do not fit: the viewport then leaves room for the left
     * arrow after the fixed tabs (the arrows themselves show once there is room for both).
     */
    bool IsOverflow() const { return KelTest::LogicalX(Viewport()) > FixedArea()->width(); }
    /** True while the strip scrolls by itself, a step every 20 ms. */
    bool IsAnimating() const { return ArrowTimer()->isActive(); }
    QTimer *ArrowTimer() const { return findChild<QTimer *>(QStringLiteral("TabBarArrowTimerEx")); }
    QTimer *DelayTimer() const { return findChild<QTimer *>(QStringLiteral("TabBarDelayTimer")); }
    /** The current scrolling tab's width (ButtonWidth() when no scrolling tab is current). */
    int CurrentButtonWidth() const
    {
        const int current = currentIndex();
        return current >= qMax(0, fixedCount) && current < count() ? TabButton(current)->width() : ButtonWidth();
    }

    // The bar's slots, reached as the buttons, the arrows and the menu reach them: through
    // the meta-object.
    void SlotChangeClicked(TabDataPtr tab) { Invoke("SlotChangeClicked", tab); }
    void SlotCloseClicked(TabDataPtr tab) { Invoke("SlotCloseClicked", tab); }
    void SlotMenuClicked(TabDataPtr tab) { Invoke("SlotMenuClicked", tab); }
    void SlotIconClicked(TabDataPtr tab) { Invoke("SlotIconClicked", tab); }
    void SlotHoverChanged(TabDataPtr tab, bool hovered)
    {
        QMetaObject::invokeMethod(this, "SlotHoverChanged", Q_ARG(TabDataPtr, tab), Q_ARG(bool, hovered));
    }
    void SlotDelayTimeout() { Invoke("SlotDelayTimeout"); }
    void SlotRefreshTab() { Invoke("SlotRefreshTab"); }
    void SlotAddFav() { Invoke("SlotAddFav"); }
    void SlotCopyLink() { Invoke("SlotCopyLink"); }
    void SlotOpenInBrowser() { Invoke("SlotOpenInBrowser"); }
    void SlotCloseCurTab() { Invoke("SlotCloseCurTab"); }
    void SlotCloseOtherTab() { Invoke("SlotCloseOtherTab"); }
    void SlotCloseLeftTab() { Invoke("SlotCloseLeftTab"); }
    void SlotCloseRightTab() { Invoke("SlotCloseRightTab"); }
    void SlotRecoverRecentlyTab() { Invoke("SlotRecoverRecentlyTab"); }
    void SlotButtonMove() { Invoke("SlotButtonMove"); }
    void SlotButtonRelease() { Invoke("SlotButtonRelease"); }

    // The menu policy, asked as the menu asks it.
    using BrowserTabBarEx::CheckCloseCurItem;
    using BrowserTabBarEx::CheckCloseLeftItem;
    using BrowserTabBarEx::CheckCloseOtherItem;
    using BrowserTabBarEx::CheckCloseRightItem;

    int fixedCount = 1;
    int fixedDesignWidth = 84; // scaled when asked, as a host would
    CloseActiveTypeEx closeType = CloseActiveRightEx;
    bool doubleClose = true;
    QString checkedIcon;
    QString pluginIconUrl;
    QStringList pluginIconRequests;
    QList<QPair<TabDataPtr, QPoint>> iconClicks;
    int movedCount = 0;           // TabButtonMoved() calls
    bool overrideRecovery = false; // when false, the base class's recovery policy answers
    bool showRecovery = false;
    bool recoveryEnabled = false;

    QFrame *FixedArea() const { return findChild<QFrame *>(QStringLiteral("TabBarFixedAreaEx")); }
    QFrame *Viewport() const { return findChild<QFrame *>(QStringLiteral("TabBarViewportEx")); }
    QFrame *Content() const { return findChild<QFrame *>(QStringLiteral("TabBarContentEx")); }
    QFrame *LeftArrowFrame() const { return findChild<QFrame *>(QStringLiteral("TabBarLeftArrowFrameEx")); }
    QFrame *RightArrowFrame() const { return findChild<QFrame *>(QStringLiteral("TabBarRightArrowFrameEx")); }
    QFrame *LeftShadow() const { return findChild<QFrame *>(QStringLiteral("TabButtonLeftShadowEx")); }
    QFrame *RightShadow() const { return findChild<QFrame *>(QStringLiteral("TabButtonRightShadowEx")); }
    QWidget *LeftArrow() const { return findChild<QWidget *>(QStringLiteral("TabButtonLeftArrowEx")); }
    QWidget *RightArrow() const { return findChild<QWidget *>(QStringLiteral("TabButtonRightArrowEx")); }

private:
    void Invoke(const char *slot) { QMetaObject::invokeMethod(this, slot); }
    void Invoke(const char *slot, const TabDataPtr &tab) { QMetaObject::invokeMethod(this, slot, Q_ARG(TabDataPtr, tab)); }

public:

    // Policy, public here so that tests can also ask it.
    int FixedTabCount() override { return fixedCount; }
    int FixedTabTotalWidth() override { return fixedCount > 0 ? DpiTool::ScaleDefault(fixedDesignWidth) : 0; }
    CloseActiveTypeEx GetCloseType() const override { return closeType; }
    bool IsDoubleCloseTab() const override { return doubleClose; }
    QString GetCheckedIcon(QSharedPointer<TabData>) override { return checkedIcon; }
    QString GetPluginIconUrl(const QString &code) const override
    {
        const_cast<TestTabBarEx *>(this)->pluginIconRequests.append(code);
        return pluginIconUrl;
    }
    void TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos) override { iconClicks.append({tab, globalPos}); }
    void TabButtonMoved() override { ++movedCount; }
    bool IsShowRecoveryItem() override
    {
        return overrideRecovery ? showRecovery : BrowserTabBarEx::IsShowRecoveryItem();
    }
    bool CheckRecoveryItem() override
    {
        return overrideRecovery ? recoveryEnabled : BrowserTabBarEx::CheckRecoveryItem();
    }

    /** Widths of the scrolling tabs, in tab order. */
    QList<int> ScrollingWidths()
    {
        QList<int> widths;
        for (int i = qMax(0, FixedTabCount()); i < count(); ++i)
            widths << TabButton(i)->width();
        return widths;
    }
    /** x of the scrolling tabs in the content strip, in tab order. */
    QList<int> ScrollingXs()
    {
        QList<int> xs;
        for (int i = qMax(0, FixedTabCount()); i < count(); ++i)
            xs << KelTest::LogicalX(TabButton(i));
        return xs;
    }
};

namespace TabTest {

/**
 * Records every logical x the watched widget is moved to (a shown widget hears of its
 * moves). Right to left a widget also moves when it narrows in place: no new x.
 */
class MoveRecorder : public QObject
{
public:
    explicit MoveRecorder(QWidget *watched)
        : QObject(watched)
        , m_last(KelTest::LogicalX(watched))
    {
        watched->installEventFilter(this);
    }
    QList<int> xs;
    /** The differences between successive positions, the first one from @p from. */
    QList<int> Steps(int from) const
    {
        QList<int> steps;
        int last = from;
        for (int x : xs) {
            steps << x - last;
            last = x;
        }
        return steps;
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Move) {
            const int x = KelTest::LogicalX(static_cast<QWidget *>(watched));
            if (x != m_last)
                xs << x;
            m_last = x;
        }
        return false;
    }

private:
    int m_last;
};

/** A press at @p global on @p widget, delivered to it as the window system would. */
inline void PressAt(QWidget *widget, const QPoint &global, Qt::MouseButton button = Qt::LeftButton)
{
    QCursor::setPos(global);
    QMouseEvent press(QEvent::MouseButtonPress, widget->mapFromGlobal(global), global, button, button, Qt::NoModifier);
    QApplication::sendEvent(widget, &press);
}

/**
 * A pointer move to @p global during a hold, delivered to the popup that holds the
 * mouse. @return false when no popup holds it.
 */
inline bool MoveHeldTo(const QPoint &global)
{
    QCursor::setPos(global);
    QWidget *popup = QApplication::activePopupWidget();
    if (!popup)
        return false;
    QMouseEvent move(QEvent::MouseMove, popup->mapFromGlobal(global), global, Qt::NoButton, Qt::LeftButton,
                     Qt::NoModifier);
    QApplication::sendEvent(popup, &move);
    return true;
}

inline TabDataPtr MakeTab(TabData::TabType type, const QString &title, const QString &id = QString())
{
    TabDataPtr tab = KelTest::MakeTab(type, title);
    if (!id.isEmpty())
        tab->SetId(id);
    return tab;
}

inline TabDataPtr Web(const QString &title) { return MakeTab(TabData::TabTypeWeb, title); }
inline TabDataPtr Home() { return MakeTab(TabData::TabTypeHomePage, QStringLiteral("Home")); }

/** Bar width that leaves @p designAvailable design pixels (scaled) for the scrolling tabs. */
inline int BarWidthFor(int designAvailable, int fixedDesignWidth = 84)
{
    return DpiTool::ScaleDefault(designAvailable) + DpiTool::ScaleDefault(10) + DpiTool::ScaleDefault(fixedDesignWidth);
}

/**
 * Gives the test case an icon cache of its own in @p dir: plug-in and web tabs ask
 * it for their icons. For initTestCase().
 */
inline void OpenIconCache(const QTemporaryDir &dir)
{
    QVERIFY(dir.isValid());
    VosImageCache::Instance()->SetCacheDirectory(dir.filePath(QStringLiteral("cache")));
}

/** Writes a 32 by 32 icon of one @p colour as @p name into @p dir; returns its path. */
inline QString MakeIconFile(const QTemporaryDir &dir, const QString &name, QColor colour)
{
    QImage image(32, 32, QImage::Format_ARGB32);
    image.fill(colour);
    const QString path = dir.filePath(name);
    image.save(path);
    return path;
}

/** Releases the icon cache and gives the screen its own scale back. For cleanupTestCase(). */
inline void EndTestCase()
{
    VosImageCache::ReleaseInstance();
    DpiTool::SetScaleFactor(0);
}

/** Adds the home tab and @p scrolling web tabs. */
inline void Fill(TestTabBarEx &bar, int scrolling)
{
    if (bar.fixedCount > 0)
        bar.addTab(Home());
    for (int i = 0; i < scrolling; ++i)
        bar.addTab(Web(QStringLiteral("Tab %1").arg(i + 1)));
}

/**
 * Runs @p reaction inside the bar's next currentChanged only, as a host that reacts
 * to the signal by changing the bar.
 */
template <typename Reaction>
void OnNextCurrentChanged(BrowserTabBarEx *bar, Reaction reaction)
{
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = QObject::connect(bar, &BrowserTabBarEx::currentChanged, bar, [connection, reaction](int) {
        QObject::disconnect(*connection);
        reaction();
    });
}

} // namespace TabTest
