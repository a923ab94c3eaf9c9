// SPDX-License-Identifier: MIT
// The classic tab strip: its context menu.

#include "keltabtest.h"
#include "classicbartest.h"

#include <QRandomGenerator>

using namespace ClassicTest;

class TstBrowserTabBarMenu : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void init();
    void cleanup();

    // context menu
    void menuEnabling_data();
    void menuEnabling();
    void menuWithoutRecoveryHasFourActions();
    void recoveryItem_data();
    void recoveryItem();
    void menuCommandsEmitTheirSignals_data();
    void menuCommandsEmitTheirSignals();
    void closeLeftOnTab2OnlyEmits();
    void disabledCommandDoesNothing();
    void unknownRecordOpensNoMenuAndKeepsMenuIndex();
    void menuRequestBeforeInitMenuDoesNothing();
    void initMenuTwiceBuildsOnce();
    void menuClosingFitsTabsAgain();
    void tabsRemovedWhileMenuIsOpen();
    void menuTabRemovedWhileMenuIsOpen();
    void barDeletedFromMenuCommand();
    void secondMenuRequestWhileOpenIsIgnored();
    void menuTabClosedByWindowRightClick();
    void barDeletedByWindowRightClickCommand_data();
    void barDeletedByWindowRightClickCommand();

private:
    std::unique_ptr<Environment> m_env;
};

void TstBrowserTabBarMenu::init()
{
    m_env = std::make_unique<Environment>();
}

void TstBrowserTabBarMenu::cleanup()
{
    FlushDeletes();
    m_env.reset();
}


// --- context menu ---------------------------------------------------------------

void TstBrowserTabBarMenu::menuEnabling_data()
{
    QTest::addColumn<int>("tabs");
    QTest::addColumn<int>("index");
    QTest::addColumn<QVector<bool>>("enabled");
    // Positions: close tab, close right, close other, close left.
    QTest::newRow("3 tabs, first") << 3 << 0 << QVector<bool>({true, true, true, false});
    QTest::newRow("3 tabs, middle") << 3 << 1 << QVector<bool>({true, true, true, true});
    QTest::newRow("3 tabs, last") << 3 << 2 << QVector<bool>({true, false, true, true});
    QTest::newRow("1 tab") << 1 << 0 << QVector<bool>({true, false, false, false});
}

void TstBrowserTabBarMenu::menuEnabling()
{
    QFETCH(int, tabs);
    QFETCH(int, index);
    QFETCH(QVector<bool>, enabled);
    auto bar = MakeBar(800, tabs);
    bar->InitMenu();
    const MenuRun run = RunMenu(bar.get(), index, -1);
    QVERIFY(run.shown);
    QCOMPARE(run.enabled, enabled);
    QVERIFY(!MenuOf(bar.get())->isVisible());
}

void TstBrowserTabBarMenu::menuWithoutRecoveryHasFourActions()
{
    auto bar = MakeBar(800, 2);
    bar->InitMenu();
    QCOMPARE(bar->contextMenuPolicy(), Qt::CustomContextMenu);
    KelMenu *menu = MenuOf(bar.get());
    QVERIFY(menu);
    QCOMPARE(menu->parent(), bar.get());
    const auto actions = menu->actions();
    QCOMPARE(actions.size(), 4);
    QStringList texts;
    for (QAction *action : actions) {
        QVERIFY(!action->isSeparator());
        QCOMPARE(action->parent(), bar.get());
        texts << action->text();
    }
    QCOMPARE(texts, QStringList({QStringLiteral("Close tab"), QStringLiteral("Close right tabs"),
                                 QStringLiteral("Close other tabs"), QStringLiteral("Close left tabs")}));
}

void TstBrowserTabBarMenu::recoveryItem_data()
{
    QTest::addColumn<bool>("recoveryEnabled");
    QTest::newRow("disabled by default") << false;
    QTest::newRow("enabled by the host") << true;
}

void TstBrowserTabBarMenu::recoveryItem()
{
    QFETCH(bool, recoveryEnabled);
    auto bar = MakeBar(800, 3);
    bar->showRecovery = true;
    bar->recoveryEnabled = recoveryEnabled;
    bar->InitMenu();
    QSignalSpy recover(bar.get(), &BrowserTabBar::SigRecoverRecentlyTab);
    const MenuRun run = RunMenu(bar.get(), 1, 5);
    QCOMPARE(run.separator, QVector<bool>({false, false, false, false, true, false}));
    QCOMPARE(run.texts.at(5), QStringLiteral("Recover recently closed tabs"));
    QCOMPARE(run.enabled.at(5), recoveryEnabled);
    QCOMPARE(recover.count(), recoveryEnabled ? 1 : 0);
    QCOMPARE(bar->count(), 3);
}

void TstBrowserTabBarMenu::menuCommandsEmitTheirSignals_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("signal");
    QTest::newRow("close tab") << 0 << "tabCloseRequested";
    QTest::newRow("close right") << 1 << "SigCloseRightTab";
    QTest::newRow("close other") << 2 << "SigCloseOtherTab";
    QTest::newRow("close left") << 3 << "SigCloseLeftTab";
}

void TstBrowserTabBarMenu::menuCommandsEmitTheirSignals()
{
    QFETCH(int, position);
    QFETCH(QString, signal);
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    QSignalSpy closeRight(bar.get(), &BrowserTabBar::SigCloseRightTab);
    QSignalSpy closeOther(bar.get(), &BrowserTabBar::SigCloseOtherTab);
    QSignalSpy closeLeft(bar.get(), &BrowserTabBar::SigCloseLeftTab);
    const QHash<QString, QSignalSpy *> spies = {{QStringLiteral("tabCloseRequested"), &closeTab},
                                                {QStringLiteral("SigCloseRightTab"), &closeRight},
                                                {QStringLiteral("SigCloseOtherTab"), &closeOther},
                                                {QStringLiteral("SigCloseLeftTab"), &closeLeft}};
    RunMenu(bar.get(), 1, position);
    for (auto it = spies.cbegin(); it != spies.cend(); ++it) {
        QCOMPARE(it.value()->count(), it.key() == signal ? 1 : 0);
        if (it.key() == signal)
            QCOMPARE(it.value()->first().first().toInt(), 1);
    }
    QCOMPARE(bar->count(), 3);
}

void TstBrowserTabBarMenu::closeLeftOnTab2OnlyEmits()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeLeft(bar.get(), &BrowserTabBar::SigCloseLeftTab);
    RunMenu(bar.get(), 2, 3);
    QCOMPARE(closeLeft.count(), 1);
    QCOMPARE(closeLeft.first().first().toInt(), 2);
    QCOMPARE(bar->count(), 3);
}

void TstBrowserTabBarMenu::disabledCommandDoesNothing()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeLeft(bar.get(), &BrowserTabBar::SigCloseLeftTab);
    const MenuRun run = RunMenu(bar.get(), 0, 3);
    QVERIFY(!run.enabled.at(3));
    QCOMPARE(closeLeft.count(), 0);
}

void TstBrowserTabBarMenu::unknownRecordOpensNoMenuAndKeepsMenuIndex()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    RunMenu(bar.get(), 1, -1);
    QSignalSpy shown(MenuOf(bar.get()), &QMenu::aboutToShow);
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, MakeTab(QStringLiteral("x")))));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QCOMPARE(shown.count(), 0);
    // The menu's commands still name the tab whose menu was opened.
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotCloseCurTab"));
    QCOMPARE(closeTab.count(), 1);
    QCOMPARE(closeTab.first().first().toInt(), 1);
}

void TstBrowserTabBarMenu::menuRequestBeforeInitMenuDoesNothing()
{
    auto bar = MakeBar(800, 2);
    QVERIFY(!MenuOf(bar.get()));
    const MenuRun run = RunMenu(bar.get(), 1, -1, false);
    QVERIFY(!run.shown);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bar->count(), 2);
}

void TstBrowserTabBarMenu::initMenuTwiceBuildsOnce()
{
    auto bar = MakeBar(800, 2);
    bar->InitMenu();
    bar->InitMenu();
    QCOMPARE(bar->findChildren<KelMenu *>().size(), 1);
    QCOMPARE(MenuOf(bar.get())->actions().size(), 4);
    QCOMPARE(bar->findChildren<QAction *>(QString(), Qt::FindDirectChildrenOnly).size(), 4);
}

void TstBrowserTabBarMenu::menuClosingFitsTabsAgain()
{
    auto bar = MakeBar(800, 10);
    bar->InitMenu();
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    QCOMPARE(bar->ButtonWidth(), 78);
    RunMenu(bar.get(), 0, -1);
    QCOMPARE(bar->ButtonWidth(), 87);
    QCOMPARE(KelTest::LogicalX(NewTabButton(bar.get())), 800 - 28);
}

void TstBrowserTabBarMenu::tabsRemovedWhileMenuIsOpen()
{
    auto bar = MakeBar(800, 5);
    bar->InitMenu();
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    const TabDataPtr target = bar->GetTabData(3);
    RunMenu(bar.get(), 3, 0, true, [&bar] {
        bar->removeTab(0);
        bar->removeTab(0);
    });
    QCOMPARE(bar->count(), 3);
    // The command names the tab whose menu was opened, at its index now.
    QCOMPARE(closeTab.count(), 1);
    QCOMPARE(closeTab.first().first().toInt(), bar->GetIndexByTabData(target));
    QCOMPARE(bar->ButtonWidth(), 164);
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162, 324}));
}

void TstBrowserTabBarMenu::menuTabRemovedWhileMenuIsOpen()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    QSignalSpy closeOther(bar.get(), &BrowserTabBar::SigCloseOtherTab);
    RunMenu(bar.get(), 1, 2, true, [&bar] { bar->removeTab(1); });
    QCOMPARE(bar->count(), 2);
    // That tab is gone: the command has nothing to act on.
    QCOMPARE(closeOther.count(), 0);
}

void TstBrowserTabBarMenu::barDeletedFromMenuCommand()
{
    QPointer<TestBar> bar = MakeBar(800, 3).release();
    bar->InitMenu();
    connect(bar.data(), &BrowserTabBar::tabCloseRequested, bar.data(), [&bar] { bar->deleteLater(); });
    RunMenu(bar.data(), 1, 0);
    FlushDeletes();
    QVERIFY(!bar);
}

void TstBrowserTabBarMenu::secondMenuRequestWhileOpenIsIgnored()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    int shows = 0;
    connect(MenuOf(bar.get()), &QMenu::aboutToShow, this, [&shows] { ++shows; });
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    RunMenu(bar.get(), 0, 0, true, [&bar] {
        QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, bar->GetTabData(2)));
    });
    QCOMPARE(shows, 1);
    QCOMPARE(closeTab.count(), 1);
    QCOMPARE(closeTab.first().first().toInt(), 0);
}

namespace {

/**
 * A bar inside a window, right-clicked through the window system path: Qt delivers
 * the press to the widget under the pointer and, after the press handler (which runs
 * the menu) has returned, sends that same widget a context-menu event.
 */
struct WindowedBar
{
    WindowedBar()
    {
        window.setGeometry(100, 100, 820, 60);
        bar = new TestBar(&window);
        bar->setGeometry(0, 0, 800, bar->minimumHeight());
        for (int i = 0; i < 3; ++i)
            bar->addTab(MakeTab(QStringLiteral("t%1").arg(i)));
        bar->InitMenu();
        window.show();
    }

    void RightClick(int index, int pick, const std::function<void()> &whileOpen = {})
    {
        QMenu *menu = MenuOf(bar);
        QObject::connect(menu, &QMenu::aboutToShow, menu, [menu, pick, whileOpen] {
            QMetaObject::invokeMethod(menu, [menu, pick, whileOpen] {
                if (whileOpen)
                    whileOpen();
                ClickMenuItem(menu, pick);
            }, Qt::QueuedConnection);
        });
        BrowserTabButton *button = ButtonAt(bar, index);
        const QPoint at = button->mapTo(&window, QPoint(20, 16));
        QCursor::setPos(window.mapToGlobal(at));
        ExpectPopupWarnings();
        QTest::mousePress(window.windowHandle(), Qt::RightButton, {}, at);
        QTest::mouseRelease(window.windowHandle(), Qt::RightButton, {}, at);
    }

    QWidget window;
    QPointer<TestBar> bar;
};

} // namespace

void TstBrowserTabBarMenu::menuTabClosedByWindowRightClick()
{
    WindowedBar host;
    QPointer<BrowserTabButton> clicked = ButtonAt(host.bar, 1);
    // "Close tab": the host closes the tab at once, inside the menu's event loop.
    connect(host.bar.data(), &BrowserTabBar::tabCloseRequested, host.bar.data(), &BrowserTabBar::removeTab);
    host.RightClick(1, 0);
    QCOMPARE(host.bar->GetAllTabTitles(), QStringList({QStringLiteral("t0"), QStringLiteral("t2")}));
    QCOMPARE(Xs(host.bar), QList<int>({0, 162}));
    // The tab that took the press outlived it, hidden, and goes with the next deferred deletions.
    QVERIFY(!clicked || clicked->isHidden());
    FlushDeletes();
    QVERIFY(!clicked);
}

void TstBrowserTabBarMenu::barDeletedByWindowRightClickCommand_data()
{
    QTest::addColumn<bool>("deferred");
    QTest::newRow("deleteLater") << true;
    QTest::newRow("delete") << false;
}

void TstBrowserTabBarMenu::barDeletedByWindowRightClickCommand()
{
    QFETCH(bool, deferred);
    WindowedBar host;
    QPointer<BrowserTabButton> clicked = ButtonAt(host.bar, 2);
    connect(host.bar.data(), &BrowserTabBar::SigCloseLeftTab, &host.window, [&host, deferred] {
        if (deferred)
            host.bar->deleteLater();
        else
            delete host.bar.data();
    }, Qt::DirectConnection);
    host.RightClick(2, 3, [&host, deferred] {
        // Deleted from inside the menu's loop, as a host's command would.
        Q_UNUSED(host)
        Q_UNUSED(deferred)
    });
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!host.bar);
    FlushDeletes();
    QVERIFY(!clicked);
    QVERIFY(!QApplication::activePopupWidget());
}


KELTAB_TEST_MAIN(TstBrowserTabBarMenu)
#include "tst_browsertabbarmenu.moc"
