// SPDX-License-Identifier: MIT
// BrowserTabBarEx under call orders that hosts produce: answers given from inside the
// bar's own signals and hooks while a drag, a menu or closing mode is under way. Each
// test names what would break. Popups need a window system, hence Xvfb.

#include "keltabtest.h"

#include "barwindowtest.h"
#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "browsertabmoveproxyex.h"
#include "dpitool.h"
#include "kelmenu.h"
#include "tabbarextestbar.h"

#include <QAction>
#include <QPointer>
#include <QTimer>
#include <QWindow>

#include <memory>

using namespace TabTest;

namespace {

const QPoint kPress(800, 500);

// A host that answers the end of a drag by changing the tab list.
class ReorderingHost : public TestTabBarEx
{
public:
    using TestTabBarEx::TestTabBarEx;
    std::function<void()> onMoved;

protected:
    void TabButtonMoved() override
    {
        TestTabBarEx::TabButtonMoved();
        if (onMoved)
            onMoved();
    }
};

} // namespace

class TstBrowserTabBarExHostile : public BarWindowTest
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void removeTabInsideTabButtonMoved();
    void resizeDuringDrag();
    void delayTimeoutDuringDrag();
    void closeButtonDuringDrag();
    void allTabsRemovedDuringDrag();
    void menuReopenedFromItsCommand();
    void menuDuringClosingRemovesClickedTab();
    void doubleClickCloseAnsweredSynchronously();
    void currentChangedRemovesDuringClosingSlide();

private:
    QPointer<ReorderingHost> m_bar;

    ReorderingHost *MakeBar(int designAvailable, int scrolling);
    static BrowserTabMoveProxyEx *Proxy()
    {
        return qobject_cast<BrowserTabMoveProxyEx *>(QApplication::activePopupWidget());
    }
    void Press(int index);
    void MoveBy(int dx);
    void Release();
    void CheckConsistent();

    void CloseLeftovers() override;
};

// A test may stop halfway through a drag or leave a menu open.
void TstBrowserTabBarExHostile::CloseLeftovers()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->hide();
}

ReorderingHost *TstBrowserTabBarExHostile::MakeBar(int designAvailable, int scrolling)
{
    m_bar = NewBarInWindow<ReorderingHost>(designAvailable);
    m_bar->SetFirstIndex(1);
    m_window->move(100, 100);
    m_bar->InitMenu();
    Fill(*m_bar, scrolling);
    ReorderingHost *bar = m_bar;
    connect(bar, &BrowserTabBarEx::tabCloseRequested, bar, [bar](int index) { bar->removeTab(index); });
    return m_bar;
}

void TstBrowserTabBarExHostile::Press(int index)
{
    PressAt(m_bar->TabButton(index), kPress);
}

void TstBrowserTabBarExHostile::MoveBy(int dx)
{
    QVERIFY(Proxy());
    QVERIFY(MoveHeldTo(kPress + QPoint(dx, 0)));
}

void TstBrowserTabBarExHostile::Release()
{
    BrowserTabMoveProxyEx *proxy = Proxy();
    QVERIFY(proxy);
    proxy->hide();
}

// Exactly the current tab checked, scrolling tabs side by side, arrows as overflow says.
void TstBrowserTabBarExHostile::CheckConsistent()
{
    for (int i = 0; i < m_bar->count(); ++i)
        QCOMPARE(m_bar->TabButton(i)->IsChecked(), i == m_bar->currentIndex());
    int x = 0;
    for (int i = 1; i < m_bar->count(); ++i) {
        QCOMPARE(m_bar->TabButton(i)->x(), x);
        QCOMPARE(m_bar->TabButton(i)->parentWidget(), m_bar->Content());
        x += m_bar->TabButton(i)->width();
    }
    QCOMPARE(m_bar->LeftArrowFrame()->isHidden(), !m_bar->IsOverflow());
    QCOMPARE(m_bar->RightArrowFrame()->isHidden(), !m_bar->IsOverflow());
}

void TstBrowserTabBarExHostile::removeTabInsideTabButtonMoved()
{
    // The host closes the dropped tab as soon as the drop is reported, while the popup
    // that reported it is still hiding.
    MakeBar(600, 4);
    ReorderingHost *bar = m_bar;
    bar->onMoved = [bar] { bar->removeTab(bar->currentIndex()); };
    Press(4);
    MoveBy(-400);
    QCOMPARE(bar->currentIndex(), 1);
    Release();
    QCOMPARE(bar->movedCount, 1);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 2", "Tab 3"}));
    QVERIFY(!Proxy());
    CheckConsistent();
    // And a next drag works.
    bar->onMoved = nullptr;
    Press(3);
    MoveBy(-350);
    Release();
    QCOMPARE(bar->GetAllTabTitles(), QStringList({"Home", "Tab 3", "Tab 1", "Tab 2"}));
    CheckConsistent();
}

void TstBrowserTabBarExHostile::resizeDuringDrag()
{
    MakeBar(1000, 4);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    Press(2);
    MoveBy(300);
    BrowserTabButtonEx *dragged = m_bar->TabButton(m_bar->currentIndex());
    const QPoint held = dragged->pos();
    // The window shrinks under the drag: the floating tab stays where the pointer holds it.
    m_window->resize(BarWidthFor(500), m_bar->height());
    m_bar->resize(m_window->size());
    QCOMPARE(dragged->pos(), held);
    QCOMPARE(dragged->parentWidget(), m_bar->Viewport());
    m_bar->AdjustForDpi();
    QCOMPARE(dragged->pos(), held);
    MoveBy(310); // clamped into the smaller viewport
    QCOMPARE(dragged->x(), m_bar->Viewport()->width() - dragged->width());
    Release();
    QCOMPARE(m_bar->movedCount, 1);
    CheckConsistent();
}

void TstBrowserTabBarExHostile::delayTimeoutDuringDrag()
{
    MakeBar(600, 5);
    m_bar->setCurrentIndex(5);
    QVERIFY(QMetaObject::invokeMethod(m_bar->TabButton(2), "SlotCloseClicked"));
    QCOMPARE(m_bar->ScrollingWidths(), QList<int>({120, 120, 120, 120}));
    Press(3);
    MoveBy(-60);
    BrowserTabButtonEx *dragged = m_bar->TabButton(m_bar->currentIndex());
    const int held = dragged->x();
    // Closing mode ends in the middle of the drag.
    m_bar->SlotDelayTimeout();
    QCOMPARE(m_bar->ButtonWidth(), 150);
    QCOMPARE(dragged->x(), held);
    Release();
    QCOMPARE(m_bar->ScrollingWidths(), QList<int>({150, 150, 150, 150}));
    CheckConsistent();
}

void TstBrowserTabBarExHostile::closeButtonDuringDrag()
{
    // The popup holds the mouse, but a host or an accessibility client can still click.
    MakeBar(600, 4);
    Press(2);
    MoveBy(20);
    QVERIFY(QMetaObject::invokeMethod(m_bar->TabButton(4), "SlotCloseClicked"));
    QCOMPARE(m_bar->count(), 4);
    QVERIFY(Proxy());
    MoveBy(200);
    Release();
    CheckConsistent();
    m_bar->SlotDelayTimeout();
    CheckConsistent();
}

void TstBrowserTabBarExHostile::allTabsRemovedDuringDrag()
{
    MakeBar(1000, 20);
    Press(5);
    MoveBy(2000); // edge scroll under way
    while (m_bar->count() > 0)
        m_bar->removeTab(m_bar->count() - 1);
    QVERIFY(!Proxy());
    QTest::qWait(60);
    QCOMPARE(m_bar->movedCount, 0);
    Fill(*m_bar, 3);
    CheckConsistent();
}

void TstBrowserTabBarExHostile::menuReopenedFromItsCommand()
{
    // A host that opens the menu again from a command: the running menu is not entered
    // twice.
    MakeBar(1000, 3);
    ReorderingHost *bar = m_bar;
    int refreshes = 0;
    connect(bar, &BrowserTabBarEx::SigRefreshTab, bar, [bar, &refreshes](int) {
        ++refreshes;
        bar->SlotMenuClicked(bar->GetTabData(1));
    });
    KelMenu *menu = bar->findChild<KelMenu *>();
    connect(menu, &QMenu::aboutToShow, menu, [menu] {
        QTimer::singleShot(0, menu, [menu] {
            menu->actions().at(0)->trigger();
            menu->close();
        });
    });
    bar->SlotMenuClicked(bar->GetTabData(2));
    QCOMPARE(refreshes, 1);
    QVERIFY(!QApplication::activePopupWidget());
    // Later menus open as ever.
    bar->SlotMenuClicked(bar->GetTabData(1));
    QCOMPARE(refreshes, 2);
}

void TstBrowserTabBarExHostile::menuDuringClosingRemovesClickedTab()
{
    MakeBar(1000, 6);
    m_bar->setCurrentIndex(6);
    QVERIFY(QMetaObject::invokeMethod(m_bar->TabButton(6), "SlotCloseClicked"));
    KelMenu *menu = m_bar->findChild<KelMenu *>();
    QPointer<BrowserTabButtonEx> clicked = m_bar->TabButton(5);
    connect(menu, &QMenu::aboutToShow, menu, [menu] {
        QTimer::singleShot(0, menu, [menu] {
            menu->actions().at(5)->trigger(); // "Close tab"
            menu->close();
        });
    });
    m_bar->SlotMenuClicked(m_bar->GetTabData(5));
    QCOMPARE(m_bar->count(), 5);
    QVERIFY(clicked);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!clicked);
    // Laid out afresh after the menu.
    QCOMPARE(m_bar->ScrollingWidths(), QList<int>({224, 224, 224, 224}));
    CheckConsistent();
    QCOMPARE(m_bar->ScrollOffset(), 0);
}

void TstBrowserTabBarExHostile::doubleClickCloseAnsweredSynchronously()
{
    MakeBar(1000, 4);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    const QPoint local = m_bar->TabButton(2)->mapTo(m_window.get(), QPoint(60, 16));
    QCursor::setPos(m_window->windowHandle()->mapToGlobal(local));
    QTest::mouseDClick(m_window->windowHandle(), Qt::LeftButton, {}, local);
    QCOMPARE(m_bar->GetAllTabTitles(), QStringList({"Home", "Tab 1", "Tab 3", "Tab 4"}));
    QVERIFY(!Proxy());
    // Closing mode: the remaining tabs keep 224 and slid left.
    QCOMPARE(m_bar->ScrollingWidths(), QList<int>({224, 224, 224}));
    CheckConsistent();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TstBrowserTabBarExHostile::currentChangedRemovesDuringClosingSlide()
{
    MakeBar(1000, 20);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_bar->setCurrentIndex(20);
    QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotRightArrowDoubleClicked"));
    QTRY_COMPARE(m_bar->ScrollOffset(), m_bar->Viewport()->width() - m_bar->Content()->width());
    ReorderingHost *bar = m_bar;
    OnNextCurrentChanged(bar, [bar] {
        bar->removeTab(3);
        bar->insertTab(2, Web(QStringLiteral("inserted")));
    });
    QVERIFY(QMetaObject::invokeMethod(bar->TabButton(20), "SlotCloseClicked"));
    QCOMPARE(bar->count(), 20);
    QTest::qWait(150);
    // The strip may lie short of the viewport while closing; it never lies right of 0.
    QVERIFY(bar->ScrollOffset() <= 0);
    QCOMPARE(bar->Content()->x(), bar->ScrollOffset());
    bar->SlotDelayTimeout();
    CheckConsistent();
    QCOMPARE(bar->ScrollOffset(), bar->Viewport()->width() - bar->Content()->width());
}

KELTAB_TEST_MAIN(TstBrowserTabBarExHostile)
#include "tst_browsertabbarexhostile.moc"
