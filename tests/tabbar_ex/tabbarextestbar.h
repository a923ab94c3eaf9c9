#pragma once

// A host-like subclass of the extended bar for the tests of tests/tabbar_ex: its fixed
// tabs, close policy and icons are set from the test, and the protected layout
// operations are re-exported.

#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "dpitool.h"
#include "tabdata.h"

#include <QFrame>
#include <QList>
#include <QMoveEvent>
#include <QPair>
#include <QPoint>
#include <QString>

class TestTabBarEx : public BrowserTabBarEx
{
public:
    explicit TestTabBarEx(QWidget *parent = nullptr)
        : BrowserTabBarEx(parent)
    {
    }

    using BrowserTabBarEx::ComputeButtonWidth;
    using BrowserTabBarEx::CreateTabButton;
    using BrowserTabBarEx::CurrentButtonWidth;
    using BrowserTabBarEx::IsOverflow;
    using BrowserTabBarEx::ResetButtons;
    using BrowserTabBarEx::ResetSeparator;
    using BrowserTabBarEx::ResizeButtons;
    using BrowserTabBarEx::ScrollOffset;
    using BrowserTabBarEx::SetContentWidth;
    using BrowserTabBarEx::SetPressedSeparator;
    using BrowserTabBarEx::SlotAddFav;
    using BrowserTabBarEx::SlotChangeClicked;
    using BrowserTabBarEx::SlotCloseClicked;
    using BrowserTabBarEx::SlotCloseCurTab;
    using BrowserTabBarEx::SlotCloseLeftTab;
    using BrowserTabBarEx::SlotCloseOtherTab;
    using BrowserTabBarEx::SlotCloseRightTab;
    using BrowserTabBarEx::SlotCopyLink;
    using BrowserTabBarEx::SlotDelayTimeout;
    using BrowserTabBarEx::SlotHoverChanged;
    using BrowserTabBarEx::SlotIconClicked;
    using BrowserTabBarEx::SlotMenuClicked;
    using BrowserTabBarEx::SlotOpenInBrowser;
    using BrowserTabBarEx::SlotRecoverRecentlyTab;
    using BrowserTabBarEx::SlotRefreshTab;
    using BrowserTabBarEx::TabButton;
    using BrowserTabBarEx::CheckCloseCurItem;
    using BrowserTabBarEx::CheckCloseLeftItem;
    using BrowserTabBarEx::CheckCloseOtherItem;
    using BrowserTabBarEx::CheckCloseRightItem;
    using BrowserTabBarEx::SlotButtonMove;
    using BrowserTabBarEx::SlotButtonPressed;
    using BrowserTabBarEx::SlotButtonRelease;
    using BrowserTabBarEx::SortButtons;

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
            xs << TabButton(i)->x();
        return xs;
    }
};

namespace TabTest {

/** Records every x the watched widget is moved to (a shown widget hears of its moves). */
class MoveRecorder : public QObject
{
public:
    explicit MoveRecorder(QWidget *watched)
        : QObject(watched)
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
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Move)
            xs << static_cast<QMoveEvent *>(event)->pos().x();
        return false;
    }
};

inline TabDataPtr MakeTab(TabData::TabType type, const QString &title, const QString &id = QString())
{
    // Records are equal when their type and data are; every test tab gets data of its own.
    static int serial = 0;
    TabDataPtr tab(new TabData);
    tab->SetTabType(type);
    tab->SetData(QStringLiteral("tab-%1").arg(++serial));
    tab->SetTitle(title);
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

/** Adds the home tab and @p scrolling web tabs. */
inline void Fill(TestTabBarEx &bar, int scrolling)
{
    if (bar.fixedCount > 0)
        bar.addTab(Home());
    for (int i = 0; i < scrolling; ++i)
        bar.addTab(Web(QStringLiteral("Tab %1").arg(i + 1)));
}

} // namespace TabTest
