// SPDX-License-Identifier: MIT
// The tabs' context menu under a real pointer, on both bars. A menu takes the mouse
// while it is open: the tab it was opened on hears no Leave when the pointer moves
// away to the menu, and a right click elsewhere goes to the menu first. QTest's
// synthetic events never show this; the X server's own events through XTEST do.

#include "bothbars.h"
#include "keltabtest.h"
#include "shownmenu.h"
#include "steps.h"
#include "xinput.h"

#include "dpitool.h"

#include <QMenu>
#include <QPointer>
#include <QWindow>
#include <QVBoxLayout>

#include <memory>

using BothBars::Kind;

class TstBrowserTabBarMenuPointer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void menuClosedLeavesNoStaleHover_data();
    void menuClosedLeavesNoStaleHover();
    void rightClickOnAnotherTabOpensItsMenu_data();
    void rightClickOnAnotherTabOpensItsMenu();
    void commandMayDeleteTheBar_data();
    void commandMayDeleteTheBar();

private:
    std::unique_ptr<KelTest::XInput> m_input;
    std::unique_ptr<QWidget> m_window;
    BrowserTabBarBase *m_bar = nullptr;
    QWidget *m_page = nullptr;

    void MakeWindow(Kind kind);
    QPoint TabCentre(int index) const;
    QList<int> Hovered() const;
    bool PointingAt(QMenu *menu, QAction *action);
    int m_wiggle = 0;
};

void TstBrowserTabBarMenuPointer::initTestCase()
{
    m_input = std::make_unique<KelTest::XInput>();
    const QString why = m_input->Unavailable();
    if (!why.isEmpty())
        QSKIP(qPrintable(why));
    DpiTool::SetScaleFactor(1.0);
}

void TstBrowserTabBarMenuPointer::cleanup()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    m_window.reset();
    m_bar = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_input->MoveTo(QPoint(5, 5));
}

void TstBrowserTabBarMenuPointer::MakeWindow(Kind kind)
{
    m_window.reset(new QWidget);
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_bar = BothBars::Make(kind);
    m_bar->InitMenu();
    layout->addWidget(m_bar);
    m_page = new QWidget;
    m_page->setMinimumHeight(400);
    layout->addWidget(m_page);
    m_window->setFixedWidth(900);
    m_window->move(100, 100);
    BothBars::Fill(*m_bar, 4);
    m_bar->setCurrentIndex(0);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

QPoint TstBrowserTabBarMenuPointer::TabCentre(int index) const
{
    return m_bar->mapToGlobal(m_bar->tabRect(index).center());
}

QList<int> TstBrowserTabBarMenuPointer::Hovered() const
{
    QList<int> hovered;
    for (int i = 0; i < m_bar->count(); ++i) {
        if (m_bar->TabButton(i)->IsHovered())
            hovered << i;
    }
    return hovered;
}

// The open menu once it is on the screen: only then can the real pointer reach its entries.
static QMenu *ShownMenu()
{
    QMenu *menu = KelTest::ShownMenu();
    return menu && menu->windowHandle() && menu->windowHandle()->isExposed() ? menu : nullptr;
}

// Whether @p action is the menu's active one. A menu takes no notice of the first
// motion after it opened (it tells a moving hand from the click that opened it), so
// until the action is active the pointer keeps moving over it by a pixel, as a hand does.
bool TstBrowserTabBarMenuPointer::PointingAt(QMenu *menu, QAction *action)
{
    if (!menu || !action)
        return false;
    if (menu->activeAction() == action)
        return true;
    m_wiggle = 1 - m_wiggle;
    m_input->MoveTo(menu->mapToGlobal(menu->actionGeometry(action).center()) + QPoint(m_wiggle, 0));
    return false;
}

using KelTest::ActionNamed;

void TstBrowserTabBarMenuPointer::menuClosedLeavesNoStaleHover_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("how"); // 0: Escape, 1: a click on the page, 2: a command
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%sEscape", prefix) << kind << 0;
        QTest::addRow("%sclick on the page", prefix) << kind << 1;
        QTest::addRow("%scommand chosen", prefix) << kind << 2;
    });
}

// The pointer goes from the tab to the menu and the menu closes: the tab must lose its
// hovered look, as nothing of the strip is under the pointer any more.
void TstBrowserTabBarMenuPointer::menuClosedLeavesNoStaleHover()
{
    QFETCH(Kind, bar);
    QFETCH(int, how);
    MakeWindow(bar);
    QSignalSpy closeRight(m_bar, &BrowserTabBarBase::SigCloseRightTab);
    m_input->MoveTo(TabCentre(1));
    QTRY_COMPARE(Hovered(), QList<int>({1}));

    // The menu runs its own event loop: the steps act from inside it.
    QPointer<QMenu> menu;
    QPointer<QAction> command;
    bool commandOverPage = false;
    KelTest::Steps steps;
    steps.When(QStringLiteral("the menu"), [] { return ShownMenu() != nullptr; }, [&] {
        menu = ShownMenu();
        command = ActionNamed(menu, QStringLiteral("Close right tabs"));
        if (!command)
            return;
        // Onto the command, which lies over the page.
        const QPoint onCommand = menu->mapToGlobal(menu->actionGeometry(command).center());
        commandOverPage = !m_bar->rect().contains(m_bar->mapFromGlobal(onCommand));
        m_input->MoveTo(onCommand);
    });
    steps.When(QStringLiteral("the command under the pointer"), [&] { return PointingAt(menu, command); },
               [&] {
                   switch (how) {
                   case 0:
                       m_input->Key(KelTest::XInput::KeyEscape);
                       break;
                   case 1:
                       m_input->MoveTo(m_page->mapToGlobal(QPoint(m_page->width() - 20, m_page->height() - 20)));
                       m_input->Click();
                       break;
                   default:
                       m_input->Click();
                       break;
                   }
               });
    steps.Start();
    m_input->Click(3);
    QTRY_VERIFY2(steps.Done() || steps.Failed(), qPrintable(steps.Waiting()));
    QVERIFY2(steps.Done(), qPrintable(steps.Waiting()));
    QVERIFY(commandOverPage);
    QTRY_VERIFY(!ShownMenu());
    QTRY_COMPARE(Hovered(), QList<int>());
    QCOMPARE(closeRight.count(), how == 2 ? 1 : 0);
    if (how == 2)
        QCOMPARE(closeRight.at(0).at(0).toInt(), 1);
    // And the strip still answers the pointer: back on a tab, that tab alone is hovered.
    m_input->MoveTo(TabCentre(2));
    QTRY_COMPARE(Hovered(), QList<int>({2}));
}

void TstBrowserTabBarMenuPointer::rightClickOnAnotherTabOpensItsMenu_data()
{
    BothBars::AddRowPerBar("tab 1 then tab 3");
}

// With tab 1's menu open, a right click on tab 3 closes that menu and opens tab 3's:
// its command acts on tab 3.
void TstBrowserTabBarMenuPointer::rightClickOnAnotherTabOpensItsMenu()
{
    QFETCH(Kind, bar);
    MakeWindow(bar);
    QSignalSpy closeOther(m_bar, &BrowserTabBarBase::SigCloseOtherTab);
    m_input->MoveTo(TabCentre(1));
    QTRY_COMPARE(Hovered(), QList<int>({1}));

    // Tab 3's upper edge: the first menu opens at tab 1's centre and lies below that.
    const QRect tab3 = m_bar->tabRect(3);
    const QPoint onTab3 = m_bar->mapToGlobal(QPoint(tab3.center().x(), tab3.top() + 4));
    QPoint firstMenuPos;
    bool tab3Free = false;
    QPointer<QAction> command;
    KelTest::Steps steps;
    steps.When(QStringLiteral("tab 1's menu"), [] { return ShownMenu() != nullptr; }, [&] {
        firstMenuPos = ShownMenu()->pos();
        tab3Free = !ShownMenu()->geometry().contains(onTab3);
        m_input->MoveTo(onTab3);
        m_input->Click(3);
    });
    steps.When(QStringLiteral("tab 3's menu"), [&] { return ShownMenu() && ShownMenu()->pos() != firstMenuPos; }, [&] {
        QMenu *second = ShownMenu();
        command = ActionNamed(second, QStringLiteral("Close other tabs"));
        if (command)
            m_input->MoveTo(second->mapToGlobal(second->actionGeometry(command).center()));
    });
    steps.When(QStringLiteral("the command under the pointer"), [&] { return PointingAt(ShownMenu(), command); },
               [&] { m_input->Click(); });
    steps.Start();
    m_input->Click(3);
    QTRY_VERIFY2(steps.Done() || steps.Failed(), qPrintable(steps.Waiting()));
    QVERIFY2(steps.Done(), qPrintable(steps.Waiting()));
    QVERIFY(tab3Free);
    QTRY_COMPARE(closeOther.count(), 1);
    QCOMPARE(closeOther.at(0).at(0).toInt(), 3);
    QTRY_VERIFY(!ShownMenu());
}

void TstBrowserTabBarMenuPointer::commandMayDeleteTheBar_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<QString>("command");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%sClose tab", prefix) << kind << QStringLiteral("Close tab");
        QTest::addRow("%sClose other tabs", prefix) << kind << QStringLiteral("Close other tabs");
    });
}

// A host that answers a command chosen with a real right click and click by deleting
// the bar outright: the menu's loop, the tab's press handler and the window system's
// bookkeeping all unwind without touching the bar (the sanitizer build checks it).
void TstBrowserTabBarMenuPointer::commandMayDeleteTheBar()
{
    QFETCH(Kind, bar);
    QFETCH(QString, command);
    MakeWindow(bar);
    QPointer<BrowserTabBarBase> guard(m_bar);
    const auto deleteBar = [this](int) { delete m_bar; };
    connect(m_bar, &BrowserTabBarBase::tabCloseRequested, m_window.get(), deleteBar);
    connect(m_bar, &BrowserTabBarBase::SigCloseOtherTab, m_window.get(), deleteBar);
    m_input->MoveTo(TabCentre(1));
    QTRY_COMPARE(Hovered(), QList<int>({1}));

    QPointer<QAction> action;
    KelTest::Steps steps;
    steps.When(QStringLiteral("the menu"), [] { return ShownMenu() != nullptr; },
               [&] { action = ActionNamed(ShownMenu(), command); });
    steps.When(QStringLiteral("the command under the pointer"), [&] { return PointingAt(ShownMenu(), action); },
               [&] { m_input->Click(); });
    steps.Start();
    m_input->Click(3);
    QTRY_VERIFY2(steps.Done() || steps.Failed(), qPrintable(steps.Waiting()));
    QVERIFY2(steps.Done(), qPrintable(steps.Waiting()));
    QTRY_VERIFY(guard.isNull());
    m_bar = nullptr;
    QTRY_VERIFY(!ShownMenu());
    // The window goes on answering the pointer.
    m_input->MoveTo(m_page->mapToGlobal(m_page->rect().center()));
    QTest::qWait(50);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

KELTAB_TEST_MAIN(TstBrowserTabBarMenuPointer)
#include "tst_browsertabbarmenupointer.moc"
