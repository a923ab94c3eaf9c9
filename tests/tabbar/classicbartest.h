// SPDX-License-Identifier: MIT
#pragma once

// Helpers of the classic tab strip's bar tests: hovering, closing, dragging
// through the bar's slots and running its context menu as a user does.

#include "browsertabmoveproxy.h"
#include "itabmanager.h"
#include "kelmenu.h"
#include "kelpushbutton.h"
#include "keltabstyle.h"
#include "tabbartestutil.h"

#include <QMenu>

#include <functional>
#include <memory>

namespace ClassicTest {

inline KelPushButton *CloseButtonOf(BrowserTabButton *button)
{
    return button->findChild<KelPushButton *>(QStringLiteral("TabButtonCloseBtn"));
}

inline KelMenu *MenuOf(BrowserTabBar *bar)
{
    return bar->findChild<KelMenu *>(QStringLiteral("BrowserTabBarMenu"));
}

inline void SendEvent(QWidget *widget, QEvent::Type type)
{
    QEvent event(type);
    QCoreApplication::sendEvent(widget, &event);
}

/** Clicks a tab's close button the way a user does: hover the tab, then click. */
inline void ClickClose(BrowserTabBar *bar, int index)
{
    BrowserTabButton *button = ButtonAt(bar, index);
    SendEvent(button, QEvent::Enter);
    QTest::mouseClick(CloseButtonOf(button), Qt::LeftButton);
}

/** Moves the pointer out of the bar and lets the bar hear it leave. */
inline void LeaveBar(BrowserTabBar *bar)
{
    QCursor::setPos(bar->mapToGlobal(QPoint(bar->width() / 2, bar->height() + 200)));
    SendEvent(bar, QEvent::Leave);
}

inline BrowserTabMoveProxy *ActiveProxy()
{
    return qobject_cast<BrowserTabMoveProxy *>(QApplication::activePopupWidget());
}

/**
 * A drag as the bar sees it: the press is a mouse press on the tab, each move a mouse
 * move delivered to the proxy popup that holds the mouse, the release a left release
 * on the proxy. The pointer is placed with QCursor::setPos as well.
 */
class SlotDrag
{
public:
    SlotDrag(BrowserTabBar *bar, int index, QPoint at = QPoint())
        : m_bar(bar)
        , m_button(ButtonAt(bar, index))
    {
        if (at.isNull())
            at = m_button->rect().center();
        m_start = m_button->mapToGlobal(at);
        m_x0 = KelTest::LogicalX(m_button);
        QCursor::setPos(m_start);
        ExpectPopupWarnings();
        QTest::mousePress(m_button, Qt::LeftButton, {}, at);
    }

    /**
     * Moves the pointer so that the held tab's left edge would lie at @p left (its
     * start edge at logical x @p left: the right edge when mirrored).
     */
    void MoveLeftEdgeTo(int left)
    {
        const QPoint global = m_start + QPoint(KelTest::Forward(m_bar, left - m_x0), 0);
        QCursor::setPos(global);
        if (BrowserTabMoveProxy *proxy = ActiveProxy()) {
            QMouseEvent move(QEvent::MouseMove, proxy->mapFromGlobal(global), global, Qt::NoButton, Qt::LeftButton,
                             Qt::NoModifier);
            QApplication::sendEvent(proxy, &move);
        }
    }

    void MoveRightEdgeTo(int right) { MoveLeftEdgeTo(right - m_button->width()); }

    void Release()
    {
        if (BrowserTabMoveProxy *proxy = ActiveProxy())
            QTest::mouseRelease(proxy, Qt::LeftButton);
    }

    BrowserTabButton *Button() const { return m_button; }
    /** The held tab's x when pressed: a move back to it is a move to the press point. */
    int StartLeft() const { return m_x0; }

private:
    BrowserTabBar *m_bar;
    BrowserTabButton *m_button;
    QPoint m_start;
    int m_x0 = 0;
};

/** What a context menu showed, and what the test did with it. */
struct MenuRun
{
    bool shown = false;
    QVector<bool> enabled;
    QVector<bool> separator;
    QStringList texts;
};

/** Clicks the action at @p pick in an open menu, as a user does (hover, then click). */
inline void ClickMenuItem(QMenu *menu, int pick)
{
    QAction *action = menu->actions().at(pick);
    const QPoint pos = menu->actionGeometry(action).center();
    QMouseEvent move(QEvent::MouseMove, pos, menu->mapToGlobal(pos), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(menu, &move);
    QTest::mouseClick(menu, Qt::LeftButton, {}, pos);
}

/**
 * Right-presses the tab at @p index. When the menu shows, records its state and,
 * queued inside the menu's own event loop, runs @p whileOpen, then clicks the action
 * at @p pick (or, for -1 or a disabled action, dismisses the menu).
 */
inline MenuRun RunMenu(BrowserTabBar *bar, int index, int pick, bool expectShown = true,
                const std::function<void()> &whileOpen = {})
{
    MenuRun run;
    QMenu *menu = MenuOf(bar);
    QMetaObject::Connection connection;
    if (menu) {
        connection = QObject::connect(menu, &QMenu::aboutToShow, menu, [&run, menu, pick, whileOpen] {
            run.shown = true;
            const auto actions = menu->actions();
            for (QAction *action : actions) {
                run.enabled << action->isEnabled();
                run.separator << action->isSeparator();
                run.texts << action->text();
            }
            QMetaObject::invokeMethod(menu, [menu, pick, whileOpen] {
                if (whileOpen)
                    whileOpen();
                if (pick >= 0)
                    ClickMenuItem(menu, pick);
                if (menu->isVisible())
                    menu->close();
            }, Qt::QueuedConnection);
        });
    }
    if (expectShown)
        ExpectPopupWarnings();
    QTest::mousePress(ButtonAt(bar, index), Qt::RightButton);
    if (menu)
        QObject::disconnect(connection);
    return run;
}

class CountingManager : public ITabManager
{
public:
    TabContainer *GetTabContainer(TabDataPtr) override { ++calls; return nullptr; }
    int OpenTab(TabDataPtr, bool) override { ++calls; return -1; }
    bool CloseTab(TabDataPtr) override { ++calls; return false; }
    TabContainer *GetCurrentTabContainer() override { ++calls; return nullptr; }
    int calls = 0;
};

} // namespace ClassicTest

namespace ClassicTest {

/** A shown bar of @p width with @p tabs web tabs titled t0, t1, ... */
inline std::unique_ptr<TestBar> MakeBar(int width, int tabs, int fixedCount = 0, int fixedWidth = 0)
{
    auto bar = std::make_unique<TestBar>();
    bar->fixedCount = fixedCount;
    bar->fixedWidth = fixedWidth;
    bar->setGeometry(100, 100, width, bar->minimumHeight());
    bar->show();
    for (int i = 0; i < tabs; ++i)
        bar->addTab(MakeTab(QStringLiteral("t%1").arg(i)));
    return bar;
}

inline bool OnlyCheckedIs(BrowserTabBar *bar, int index)
{
    const auto buttons = Buttons(bar);
    for (int i = 0; i < buttons.size(); ++i) {
        if (buttons.at(i)->IsChecked() != (i == index))
            return false;
    }
    return true;
}

/** The placement rule for movable tabs, given the common width and the one-pixel remainder. */
inline QList<int> ExpectedXs(int count, int fixedCount, int fixedWidth, int buttonWidth, int extra)
{
    QList<int> xs;
    const int spacing = S(2);
    const int fixedStep = fixedCount > 0 ? (fixedWidth - spacing) / fixedCount + spacing : 0;
    const int offset = fixedCount > 0 ? fixedWidth - spacing : 0;
    for (int i = 0; i < count; ++i) {
        if (i < fixedCount) {
            xs << (fixedStep - spacing) * i;
        } else {
            const int k = i - fixedCount;
            xs << (buttonWidth - spacing) * k + qMin(k, extra) + offset;
        }
    }
    return xs;
}

} // namespace ClassicTest
