// SPDX-License-Identifier: MIT
// Both tab strips worked from the keyboard alone: Tab into the bar, move among the
// tabs, activate, close and open the context menu; and no key taken while the bar has
// no focus. Every row runs on the classic bar and on the scrolling bar. Runs on the X
// server: the context menu is a popup that takes the mouse and keyboard.

#include "a11yactive.h"
#include "bothbars.h"
#include "keltabtest.h"
#include "shownmenu.h"
#include "steps.h"

#include "dpitool.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QVBoxLayout>

#include <memory>

using BothBars::Kind;

namespace {

QList<QPair<QAccessible::Event, QString>> g_events;

void RecordEvent(QAccessibleEvent *event)
{
    QAccessibleInterface *iface = event->accessibleInterface();
    g_events << qMakePair(event->type(), iface ? iface->text(QAccessible::Name) : QString());
}

QStringList FocusEvents()
{
    QStringList names;
    for (const auto &event : qAsConst(g_events)) {
        if (event.first == QAccessible::Focus)
            names << event.second;
    }
    return names;
}

using KelTest::ShownMenu;

} // namespace

class TstBrowserTabBarKeyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void tabKeyFocusesTheBarAndShowsARing_data();
    void tabKeyFocusesTheBarAndShowsARing();
    void arrowsHomeAndEndMoveTheFocus_data();
    void arrowsHomeAndEndMoveTheFocus();
    void enterAndSpaceMakeTheFocusedTabCurrent_data();
    void enterAndSpaceMakeTheFocusedTabCurrent();
    void deleteAndCtrlWAskToCloseTheFocusedTab_data();
    void deleteAndCtrlWAskToCloseTheFocusedTab();
    void removingTheFocusedTabFocusesItsNeighbour_data();
    void removingTheFocusedTabFocusesItsNeighbour();
    void keysAreLeftAloneWithoutFocus_data();
    void keysAreLeftAloneWithoutFocus();
    void menuKeysOpenTheMenuAtTheTab_data();
    void menuKeysOpenTheMenuAtTheTab();
    void endScrollsTheLastTabIntoView();

private:
    std::unique_ptr<QWidget> m_window;
    QLineEdit *m_edit = nullptr;
    BrowserTabBarBase *m_bar = nullptr;

    bool MakeWindow(Kind kind, int tabs, int width = 900);
    bool FocusBar();
    int FocusedTab() const;
};

void TstBrowserTabBarKeyboard::initTestCase()
{
    DpiTool::SetScaleFactor(1.0);
    QVERIFY(KelTest::SwitchAccessibilityOn());
    QAccessible::installUpdateHandler(&RecordEvent);
}

void TstBrowserTabBarKeyboard::cleanup()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    m_window.reset();
    m_bar = nullptr;
    m_edit = nullptr;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    g_events.clear();
}

// A line edit before the bar, as a host's address field would be.
bool TstBrowserTabBarKeyboard::MakeWindow(Kind kind, int tabs, int width)
{
    m_window.reset(new QWidget);
    auto *layout = new QVBoxLayout(m_window.get());
    m_edit = new QLineEdit(m_window.get());
    m_bar = BothBars::Make(kind, m_window.get());
    m_bar->setFixedSize(width, 40);
    layout->addWidget(m_edit);
    layout->addWidget(m_bar);
    BothBars::Fill(*m_bar, tabs);
    m_bar->InitMenu();
    m_bar->setCurrentIndex(1);
    m_window->show();
    m_window->activateWindow();
    if (!QTest::qWaitForWindowActive(m_window.get()))
        return false;
    m_edit->setFocus();
    return m_edit->hasFocus();
}

bool TstBrowserTabBarKeyboard::FocusBar()
{
    QTest::keyClick(m_edit, Qt::Key_Tab);
    return m_bar->hasFocus();
}

// The tab the bar reports as focused to assistive technology.
int TstBrowserTabBarKeyboard::FocusedTab() const
{
    QAccessibleInterface *focused = QAccessible::queryAccessibleInterface(m_bar)->focusChild();
    if (!focused)
        return -1;
    for (int i = 0; i < m_bar->count(); ++i) {
        if (focused->object() == m_bar->TabButton(i))
            return i;
    }
    return -2;
}

void TstBrowserTabBarKeyboard::tabKeyFocusesTheBarAndShowsARing_data()
{
    BothBars::AddRowPerBar("tab");
}

void TstBrowserTabBarKeyboard::tabKeyFocusesTheBarAndShowsARing()
{
    QFETCH(Kind, bar);
    QVERIFY(MakeWindow(bar, 4));
    QCOMPARE(m_bar->focusPolicy(), Qt::TabFocus);
    QVERIFY(!m_window->findChild<QFrame *>(QStringLiteral("TabBarFocusRing")) ||
            !m_window->findChild<QFrame *>(QStringLiteral("TabBarFocusRing"))->isVisible());
    g_events.clear();
    QVERIFY(FocusBar());
    // The focus lands on the current tab, and a screen reader is told which it is.
    QCOMPARE(FocusedTab(), 1);
    // Qt announces the bar itself as well (its focusChild() is the tab); ours names the tab.
    QVERIFY2(FocusEvents().contains(QStringLiteral("t1")), qPrintable(FocusEvents().join(QLatin1Char('|'))));
    QCOMPARE(FocusEvents().count(QStringLiteral("t1")), 1);
    auto *ring = m_window->findChild<QFrame *>(QStringLiteral("TabBarFocusRing"));
    QVERIFY(ring);
    QVERIFY(ring->isVisible());
    QCOMPARE(ring->parentWidget(), m_bar->TabButton(1));
    QCOMPARE(ring->geometry(), m_bar->TabButton(1)->rect());
    QVERIFY(m_bar->TabButton(1)->property("keyboardFocus").toBool());
    QVERIFY(QAccessible::queryAccessibleInterface(m_bar->TabButton(1))->state().focused);
    // Tab again leaves the bar: the ring goes.
    QTest::keyClick(m_bar, Qt::Key_Tab);
    QVERIFY(!m_bar->hasFocus());
    QVERIFY(!ring->isVisible());
    QVERIFY(!m_bar->TabButton(1)->property("keyboardFocus").toBool());
    QCOMPARE(FocusedTab(), -1);
    // Focus given by code, as a window does on activation, draws no ring until a key
    // of the bar is used.
    m_bar->setFocus(Qt::ActiveWindowFocusReason);
    QVERIFY(m_bar->hasFocus());
    QVERIFY(!ring->isVisible());
    QTest::keyClick(m_bar, Qt::Key_Right);
    QVERIFY(ring->isVisible());
    QCOMPARE(ring->parentWidget(), m_bar->TabButton(2));
}

using Keys = QList<QPair<int, int>>; // key, modifiers
Q_DECLARE_METATYPE(Keys)

void TstBrowserTabBarKeyboard::arrowsHomeAndEndMoveTheFocus_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<QList<int>>("focused");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        const Qt::LayoutDirection ltr = Qt::LeftToRight;
        QTest::addRow("%sright, right", prefix) << kind << ltr << Keys{{Qt::Key_Right, 0}, {Qt::Key_Right, 0}} << QList<int>{2, 3};
        QTest::addRow("%sright stops at the end", prefix)
            << kind << ltr << Keys{{Qt::Key_Right, 0}, {Qt::Key_Right, 0}, {Qt::Key_Right, 0}, {Qt::Key_Right, 0}} << QList<int>{2, 3, 4, 4};
        QTest::addRow("%sleft stops at the start", prefix) << kind << ltr << Keys{{Qt::Key_Left, 0}, {Qt::Key_Left, 0}} << QList<int>{0, 0};
        QTest::addRow("%send, home", prefix) << kind << ltr << Keys{{Qt::Key_End, 0}, {Qt::Key_Home, 0}} << QList<int>{4, 0};
        QTest::addRow("%sright-to-left: left goes on", prefix)
            << kind << Qt::RightToLeft << Keys{{Qt::Key_Left, 0}, {Qt::Key_Right, 0}, {Qt::Key_Right, 0}} << QList<int>{2, 1, 0};
    });
}

// The focus moves and the current tab stays: a user looks before choosing.
void TstBrowserTabBarKeyboard::arrowsHomeAndEndMoveTheFocus()
{
    QFETCH(Kind, bar);
    QFETCH(Qt::LayoutDirection, direction);
    QFETCH(Keys, keys);
    QFETCH(QList<int>, focused);
    QVERIFY(MakeWindow(bar, 5));
    m_bar->setLayoutDirection(direction);
    QVERIFY(FocusBar());
    QSignalSpy current(m_bar, &BrowserTabBarBase::currentChanged);
    for (int i = 0; i < keys.size(); ++i) {
        g_events.clear();
        QTest::keyClick(m_bar, Qt::Key(keys.at(i).first), Qt::KeyboardModifiers(keys.at(i).second));
        QCOMPARE(FocusedTab(), focused.at(i));
        auto *ring = m_window->findChild<QFrame *>(QStringLiteral("TabBarFocusRing"));
        QVERIFY(ring && ring->isVisible());
        QCOMPARE(ring->parentWidget(), m_bar->TabButton(focused.at(i)));
        QCOMPARE(FocusEvents(), QStringList{QStringLiteral("t%1").arg(focused.at(i))});
    }
    QCOMPARE(current.count(), 0);
    QCOMPARE(m_bar->currentIndex(), 1);
}

void TstBrowserTabBarKeyboard::enterAndSpaceMakeTheFocusedTabCurrent_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("key");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%sreturn", prefix) << kind << int(Qt::Key_Return);
        QTest::addRow("%senter", prefix) << kind << int(Qt::Key_Enter);
        QTest::addRow("%sspace", prefix) << kind << int(Qt::Key_Space);
    });
}

void TstBrowserTabBarKeyboard::enterAndSpaceMakeTheFocusedTabCurrent()
{
    QFETCH(Kind, bar);
    QFETCH(int, key);
    QVERIFY(MakeWindow(bar, 5));
    QVERIFY(FocusBar());
    QTest::keyClick(m_bar, Qt::Key_Right);
    QTest::keyClick(m_bar, Qt::Key_Right);
    QSignalSpy current(m_bar, &BrowserTabBarBase::currentChanged);
    g_events.clear();
    QTest::keyClick(m_bar, Qt::Key(key));
    QCOMPARE(m_bar->currentIndex(), 3);
    QCOMPARE(current.count(), 1);
    QCOMPARE(current.at(0).at(0).toInt(), 3);
    QVERIFY(QAccessible::queryAccessibleInterface(m_bar->TabButton(3))->state().selected);
    QCOMPARE(FocusedTab(), 3);
}

void TstBrowserTabBarKeyboard::deleteAndCtrlWAskToCloseTheFocusedTab_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%sdelete", prefix) << kind << int(Qt::Key_Delete) << int(Qt::NoModifier);
        QTest::addRow("%sctrl+w", prefix) << kind << int(Qt::Key_W) << int(Qt::ControlModifier);
    });
}

// The same request as the tab's close button; the host decides. A window shortcut on
// the same key does not fire while the bar has the focus.
void TstBrowserTabBarKeyboard::deleteAndCtrlWAskToCloseTheFocusedTab()
{
    QFETCH(Kind, bar);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QVERIFY(MakeWindow(bar, 5));
    auto *shortcut = new QShortcut(QKeySequence(key | modifiers), m_window.get());
    QSignalSpy shortcutSpy(shortcut, &QShortcut::activated);
    QVERIFY(FocusBar());
    QTest::keyClick(m_bar, Qt::Key_End);
    QSignalSpy close(m_bar, &BrowserTabBarBase::tabCloseRequested);
    QTest::keyClick(m_bar, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QCOMPARE(close.count(), 1);
    QCOMPARE(close.at(0).at(0).toInt(), 4);
    QCOMPARE(shortcutSpy.count(), 0);
    QCOMPARE(m_bar->count(), 5); // asked, not done
}

void TstBrowserTabBarKeyboard::removingTheFocusedTabFocusesItsNeighbour_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("focus");
    QTest::addColumn<int>("next");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%smiddle", prefix) << kind << 3 << 3;
        QTest::addRow("%slast", prefix) << kind << 4 << 3;
    });
}

// A host that answers the close request: the focus stays in the strip, on the tab that
// took the closed one's place, and a screen reader is told.
void TstBrowserTabBarKeyboard::removingTheFocusedTabFocusesItsNeighbour()
{
    QFETCH(Kind, bar);
    QFETCH(int, focus);
    QFETCH(int, next);
    QVERIFY(MakeWindow(bar, 5));
    connect(m_bar, &BrowserTabBarBase::tabCloseRequested, m_bar, &BrowserTabBarBase::removeTab);
    QVERIFY(FocusBar());
    QTest::keyClick(m_bar, Qt::Key_Home);
    for (int i = 0; i < focus; ++i)
        QTest::keyClick(m_bar, Qt::Key_Right);
    const QString expected = m_bar->GetTabData(focus == next ? focus + 1 : next)->GetTitle();
    g_events.clear();
    QTest::keyClick(m_bar, Qt::Key_Delete);
    QCOMPARE(m_bar->count(), 4);
    QVERIFY(m_bar->hasFocus());
    QCOMPARE(FocusedTab(), next);
    QCOMPARE(m_bar->GetTabData(next)->GetTitle(), expected);
    QVERIFY(FocusEvents().contains(expected));
    QCOMPARE(m_bar->currentIndex(), 1);
}

void TstBrowserTabBarKeyboard::keysAreLeftAloneWithoutFocus_data()
{
    BothBars::AddRowPerBar("edit focused");
}

void TstBrowserTabBarKeyboard::keysAreLeftAloneWithoutFocus()
{
    QFETCH(Kind, bar);
    QVERIFY(MakeWindow(bar, 5));
    auto *shortcut = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_W), m_window.get());
    QSignalSpy shortcutSpy(shortcut, &QShortcut::activated);
    QSignalSpy close(m_bar, &BrowserTabBarBase::tabCloseRequested);
    QSignalSpy current(m_bar, &BrowserTabBarBase::currentChanged);
    const QList<QPair<int, int>> keys{{Qt::Key_Right, 0}, {Qt::Key_End, 0}, {Qt::Key_Return, 0},
                                      {Qt::Key_Delete, 0}, {Qt::Key_W, int(Qt::ControlModifier)}};
    for (const auto &key : keys)
        QTest::keyClick(m_edit, Qt::Key(key.first), Qt::KeyboardModifiers(key.second));
    QVERIFY(m_edit->hasFocus());
    QCOMPARE(close.count(), 0);
    QCOMPARE(current.count(), 0);
    QCOMPARE(shortcutSpy.count(), 1);
    QVERIFY(!ShownMenu());
}

void TstBrowserTabBarKeyboard::menuKeysOpenTheMenuAtTheTab_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<Qt::LayoutDirection>("direction");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%smenu", prefix) << kind << int(Qt::Key_Menu) << int(Qt::NoModifier) << Qt::LeftToRight;
        QTest::addRow("%sshift+f10", prefix) << kind << int(Qt::Key_F10) << int(Qt::ShiftModifier) << Qt::LeftToRight;
        QTest::addRow("%smenu, right to left", prefix) << kind << int(Qt::Key_Menu) << int(Qt::NoModifier) << Qt::RightToLeft;
    });
}

// The menu is the tab's own: its "Close tab" asks to close the focused tab.
void TstBrowserTabBarKeyboard::menuKeysOpenTheMenuAtTheTab()
{
    QFETCH(Kind, bar);
    QFETCH(int, key);
    QFETCH(int, modifiers);
    QFETCH(Qt::LayoutDirection, direction);
    QVERIFY(MakeWindow(bar, 5));
    m_bar->setLayoutDirection(direction);
    QVERIFY(FocusBar());
    const Qt::Key forward = direction == Qt::RightToLeft ? Qt::Key_Left : Qt::Key_Right;
    QTest::keyClick(m_bar, forward);
    QTest::keyClick(m_bar, forward); // tab 3
    QSignalSpy close(m_bar, &BrowserTabBarBase::tabCloseRequested);
    QPoint menuAt;
    KelTest::Steps steps;
    steps.When(QStringLiteral("the menu"), [] { return ShownMenu() != nullptr; }, [&menuAt] {
        QMenu *menu = ShownMenu();
        menuAt = KelTest::MenuAnchor(menu);
        for (QAction *action : menu->actions()) {
            if (action->text() == QLatin1String("Close tab") && action->isEnabled()) {
                action->trigger();
                break;
            }
        }
        menu->close();
    });
    steps.Start();
    QTest::keyClick(m_bar, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
    QVERIFY2(steps.Done(), qPrintable(steps.Waiting()));
    const QRect tab(m_bar->TabButton(3)->mapToGlobal(QPoint(0, 0)), m_bar->TabButton(3)->size());
    // Under the tab's start, wherever the pointer is (a menu may shift itself by its
    // margins): its left end, its right end right to left.
    const QPoint start = direction == Qt::RightToLeft ? tab.bottomRight() + QPoint(1, 1) : tab.bottomLeft() + QPoint(0, 1);
    QVERIFY2((menuAt - start).manhattanLength() <= 20,
             qPrintable(QStringLiteral("menu at %1,%2, tab %3,%4").arg(menuAt.x()).arg(menuAt.y()).arg(tab.x()).arg(tab.bottom())));
    QCOMPARE(close.count(), 1);
    QCOMPARE(close.at(0).at(0).toInt(), 3);
}

// The scrolling bar brings the tab the keyboard reaches into view.
void TstBrowserTabBarKeyboard::endScrollsTheLastTabIntoView()
{
    QVERIFY(MakeWindow(Kind::Scrolling, 30, 600));
    QVERIFY(FocusBar());
    QAccessibleInterface *last = QAccessible::queryAccessibleInterface(m_bar->TabButton(29));
    QVERIFY(last->state().invisible);
    QTest::keyClick(m_bar, Qt::Key_End);
    QTRY_VERIFY(!last->state().invisible);
    QTest::keyClick(m_bar, Qt::Key_Home);
    QTRY_VERIFY(!QAccessible::queryAccessibleInterface(m_bar->TabButton(0))->state().invisible);
    QTRY_VERIFY(last->state().invisible);
}

KELTAB_TEST_MAIN(TstBrowserTabBarKeyboard)
#include "tst_browsertabbarkeyboard.moc"
