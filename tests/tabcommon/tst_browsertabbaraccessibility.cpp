// SPDX-License-Identifier: MIT
// What assistive technology reads from both tab strips through Qt's accessibility
// tree, and the events that keep a client's copy of that tree current. Every row runs
// on the classic bar and on the scrolling bar; the rows marked "QTabBar" hold Qt's own
// tab bar to the same assertions where it has the feature, as a control.

#include "a11yactive.h"
#include "bothbars.h"
#include "keltabtest.h"

#include "dpitool.h"

#include <QAccessible>
#include <QAbstractButton>
#include <QTabBar>

#include <memory>

using BothBars::Kind;

namespace {

struct Recorded
{
    QAccessible::Event type;
    QAccessible::Role role;
    QString name;
};

QList<Recorded> g_events;

void RecordEvent(QAccessibleEvent *event)
{
    Recorded recorded{event->type(), QAccessible::NoRole, QString()};
    // Resolved now: the event names its object (and child) only while it is delivered.
    if (QAccessibleInterface *iface = event->accessibleInterface()) {
        recorded.role = iface->role();
        recorded.name = iface->text(QAccessible::Name);
    }
    g_events << recorded;
}

bool HasEvent(QAccessible::Event type, QAccessible::Role role, const QString &name)
{
    for (const Recorded &event : qAsConst(g_events)) {
        if (event.type == type && event.role == role && event.name == name)
            return true;
    }
    return false;
}

QString Dump()
{
    QStringList lines;
    for (const Recorded &event : qAsConst(g_events))
        lines << QStringLiteral("0x%1 role 0x%2 \"%3\"").arg(event.type, 0, 16).arg(event.role, 0, 16).arg(event.name);
    return lines.join(QLatin1Char('\n'));
}

QAccessibleInterface *Iface(QObject *object)
{
    return QAccessible::queryAccessibleInterface(object);
}

// The page tabs among @p list's direct children, in order.
QList<QAccessibleInterface *> PageTabs(QAccessibleInterface *list)
{
    QList<QAccessibleInterface *> tabs;
    for (int i = 0; i < list->childCount(); ++i) {
        QAccessibleInterface *child = list->child(i);
        if (child && child->role() == QAccessible::PageTab)
            tabs << child;
    }
    return tabs;
}

QStringList Names(const QList<QAccessibleInterface *> &list)
{
    QStringList names;
    for (QAccessibleInterface *iface : list)
        names << iface->text(QAccessible::Name);
    return names;
}

// The children of @p list that are buttons, by name.
QAccessibleInterface *ButtonNamed(QAccessibleInterface *list, const QString &name)
{
    for (int i = 0; i < list->childCount(); ++i) {
        QAccessibleInterface *child = list->child(i);
        if (child && child->role() == QAccessible::Button && child->text(QAccessible::Name) == name)
            return child;
    }
    return nullptr;
}

QAbstractButton *CloseButtonOf(BrowserTabButtonBase *tab)
{
    for (QAbstractButton *candidate : tab->findChildren<QAbstractButton *>()) {
        if (candidate->objectName().startsWith(QLatin1String("TabButtonCloseBtn")))
            return candidate;
    }
    return nullptr;
}

} // namespace

class TstBrowserTabBarAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void barIsAPageTabListOfItsTabsInOrder_data();
    void barIsAPageTabListOfItsTabsInOrder();
    void qtabbarIsAPageTabListOfItsTabsInOrder();
    void namesAreFullTitles_data();
    void namesAreFullTitles();
    void onlyTheCurrentTabIsSelected_data();
    void onlyTheCurrentTabIsSelected();
    void pressActionMakesTheTabCurrent_data();
    void pressActionMakesTheTabCurrent();
    void rectIsTheTabOnScreen_data();
    void rectIsTheTabOnScreen();
    void closeButtonIsANamedButtonThatCloses_data();
    void closeButtonIsANamedButtonThatCloses();
    void stripButtonsAreNamedWithTheirState_data();
    void stripButtonsAreNamedWithTheirState();
    void scrolledAwayTabsAreOffscreen();
    void tabsThatFitAreOnScreen_data();
    void tabsThatFitAreOnScreen();
    void classicTabsCutOffAreOffscreen();
    void classicTabsPastTheEndKeepTheirCloseButton();
    void changesAreAnnounced_data();
    void changesAreAnnounced();
    void qtabbarAnnouncesTheSame_data();
    void qtabbarAnnouncesTheSame();

private:
    /**
     * Makes m_bar, a bar of @p kind with @p tabs web tabs, shown at @p width; false
     * when the window system does not expose it. The test checks the result, so that
     * it stops there: QVERIFY(ShowBar(...)).
     */
    bool ShowBar(Kind kind, int tabs, int width = 900);
    /** ShowBar() for the bar of the current row's "bar" column. */
    bool ShowRowBar(int tabs, int width = 900);
    /** Qt's own tab bar as the control, as ShowBar() makes ours with five tabs. */
    static bool ShowQTabBar(QTabBar &bar);

    // The bar under test, one per test function (and row); gone in cleanup().
    std::unique_ptr<BrowserTabBarBase> m_bar;
};

void TstBrowserTabBarAccessibility::initTestCase()
{
    DpiTool::SetScaleFactor(1.0);
    QVERIFY(KelTest::SwitchAccessibilityOn());
    QAccessible::installUpdateHandler(&RecordEvent);
}

void TstBrowserTabBarAccessibility::init()
{
    g_events.clear();
}

void TstBrowserTabBarAccessibility::cleanup()
{
    m_bar.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    g_events.clear();
}

bool TstBrowserTabBarAccessibility::ShowBar(Kind kind, int tabs, int width)
{
    m_bar.reset(BothBars::Make(kind));
    m_bar->resize(width, 40);
    BothBars::Fill(*m_bar, tabs);
    m_bar->show();
    return QTest::qWaitForWindowExposed(m_bar.get());
}

bool TstBrowserTabBarAccessibility::ShowRowBar(int tabs, int width)
{
    QFETCH(Kind, bar);
    return ShowBar(bar, tabs, width);
}

bool TstBrowserTabBarAccessibility::ShowQTabBar(QTabBar &bar)
{
    for (int i = 0; i < 5; ++i)
        bar.addTab(QStringLiteral("t%1").arg(i));
    bar.resize(900, 40);
    bar.show();
    return QTest::qWaitForWindowExposed(&bar);
}

void TstBrowserTabBarAccessibility::barIsAPageTabListOfItsTabsInOrder_data()
{
    BothBars::AddRowPerBar("five tabs");
}

// The tabs are the list's direct children, in display order, and know it as their
// parent: the frames that hold them inside the bar stay out of the way.
void TstBrowserTabBarAccessibility::barIsAPageTabListOfItsTabsInOrder()
{
    QVERIFY(ShowRowBar(5));
    QAccessibleInterface *list = Iface(m_bar.get());
    QVERIFY(list);
    QCOMPARE(list->role(), QAccessible::PageTabList);
    // Named for the focus entering it; a host's own name wins.
    QCOMPARE(list->text(QAccessible::Name), QStringLiteral("Tabs"));
    m_bar->setAccessibleName(QStringLiteral("Pages of this window"));
    QCOMPARE(list->text(QAccessible::Name), QStringLiteral("Pages of this window"));
    const QList<QAccessibleInterface *> tabs = PageTabs(list);
    QCOMPARE(Names(tabs), BothBars::Titles(*m_bar));
    for (int i = 0; i < m_bar->count(); ++i) {
        QAccessibleInterface *tab = list->child(i);
        QCOMPARE(tab->object(), static_cast<QObject *>(m_bar->TabButton(i)));
        QCOMPARE(tab->parent(), list);
        QCOMPARE(list->indexOfChild(tab), i);
    }
    // After the tabs, the bar's own buttons, each at its own index; nothing past them.
    for (int i = m_bar->count(); i < list->childCount(); ++i) {
        QAccessibleInterface *control = list->child(i);
        QVERIFY(control);
        QCOMPARE(control->role(), QAccessible::Button);
        QCOMPARE(list->indexOfChild(control), i);
    }
    QVERIFY(!list->child(list->childCount()));
    QVERIFY(!list->child(-1));
    QCOMPARE(list->indexOfChild(nullptr), -1);
    QCOMPARE(list->indexOfChild(Iface(m_bar->TabButton(0)->window())), -1);
    // A move shows in the order at once.
    m_bar->moveTab(0, 3);
    QCOMPARE(Names(PageTabs(list)), (QStringList{"t1", "t2", "t3", "t0", "t4"}));
    m_bar->removeTab(1);
    QCOMPARE(Names(PageTabs(list)), (QStringList{"t1", "t3", "t0", "t4"}));
}

void TstBrowserTabBarAccessibility::qtabbarIsAPageTabListOfItsTabsInOrder()
{
    QTabBar bar;
    QVERIFY(ShowQTabBar(bar));
    QAccessibleInterface *list = Iface(&bar);
    QCOMPARE(list->role(), QAccessible::PageTabList);
    QCOMPARE(Names(PageTabs(list)), (QStringList{"t0", "t1", "t2", "t3", "t4"}));
    bar.moveTab(0, 3);
    QCOMPARE(Names(PageTabs(list)), (QStringList{"t1", "t2", "t3", "t0", "t4"}));
}

void TstBrowserTabBarAccessibility::namesAreFullTitles_data()
{
    BothBars::AddRowPerBar("narrow tabs");
}

// The label cuts or elides a long title; the name is the whole of it.
void TstBrowserTabBarAccessibility::namesAreFullTitles()
{
    QVERIFY(ShowRowBar(6, 500));
    const QString title = QStringLiteral("Welcome to the example site of a very long title indeed");
    m_bar->setTabText(2, title);
    QAccessibleInterface *tab = Iface(m_bar.get())->child(2);
    QCOMPARE(tab->text(QAccessible::Name), title);
    QVERIFY(m_bar->tabRect(2).width() < m_bar->fontMetrics().horizontalAdvance(title));
}

void TstBrowserTabBarAccessibility::onlyTheCurrentTabIsSelected_data()
{
    BothBars::AddRowsPerBar<int>("current", {{"first", 0}, {"middle", 2}, {"last", 4}, {"none", -1}});
}

void TstBrowserTabBarAccessibility::onlyTheCurrentTabIsSelected()
{
    QFETCH(int, current);
    QVERIFY(ShowRowBar(5));
    m_bar->setCurrentIndex(current == 1 ? 0 : 1);
    m_bar->setCurrentIndex(current);
    QAccessibleInterface *list = Iface(m_bar.get());
    for (int i = 0; i < m_bar->count(); ++i) {
        const QAccessible::State state = list->child(i)->state();
        QCOMPARE(bool(state.selected), i == current);
        QVERIFY(state.selectable);
        QVERIFY(!state.invisible);
    }
}

void TstBrowserTabBarAccessibility::pressActionMakesTheTabCurrent_data()
{
    BothBars::AddRowPerBar("press");
}

void TstBrowserTabBarAccessibility::pressActionMakesTheTabCurrent()
{
    QVERIFY(ShowRowBar(5));
    m_bar->setCurrentIndex(0);
    QSignalSpy current(m_bar.get(), &BrowserTabBarBase::currentChanged);
    QAccessibleInterface *tab = Iface(m_bar.get())->child(3);
    QAccessibleActionInterface *action = tab->actionInterface();
    QVERIFY(action);
    QVERIFY(action->actionNames().contains(QAccessibleActionInterface::pressAction()));
    action->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(m_bar->currentIndex(), 3);
    QCOMPARE(current.count(), 1);
    QCOMPARE(current.at(0).at(0).toInt(), 3);
    QVERIFY(tab->state().selected);
    QVERIFY(!Iface(m_bar.get())->child(0)->state().selected);
}

void TstBrowserTabBarAccessibility::rectIsTheTabOnScreen_data()
{
    BothBars::AddRowPerBar("rects");
}

void TstBrowserTabBarAccessibility::rectIsTheTabOnScreen()
{
    QVERIFY(ShowRowBar(4));
    m_bar->move(37, 21);
    QAccessibleInterface *list = Iface(m_bar.get());
    for (int i = 0; i < m_bar->count(); ++i) {
        const QRect expected(m_bar->mapToGlobal(m_bar->tabRect(i).topLeft()), m_bar->tabRect(i).size());
        QCOMPARE(list->child(i)->rect(), expected);
        QCOMPARE(list->childAt(expected.center().x(), expected.center().y()) == list->child(i) ||
                     list->childAt(expected.center().x(), expected.center().y())->parent() == list->child(i),
                 true);
    }
}

void TstBrowserTabBarAccessibility::closeButtonIsANamedButtonThatCloses_data()
{
    BothBars::AddRowPerBar("close");
}

void TstBrowserTabBarAccessibility::closeButtonIsANamedButtonThatCloses()
{
    QVERIFY(ShowRowBar(3));
    m_bar->setCurrentIndex(1);
    QAccessibleInterface *tab = Iface(m_bar.get())->child(1);
    QCOMPARE(tab->childCount(), 1);
    QAccessibleInterface *close = tab->child(0);
    QCOMPARE(close->role(), QAccessible::Button);
    QCOMPARE(close->text(QAccessible::Name), QStringLiteral("Close tab t1"));
    QCOMPARE(close->parent(), tab);
    QCOMPARE(close->object(), static_cast<QObject *>(CloseButtonOf(m_bar->TabButton(1))));
    QCOMPARE(bool(close->state().disabled), false);
    // Renamed with its tab.
    m_bar->setTabText(1, QStringLiteral("Renamed"));
    QCOMPARE(close->text(QAccessible::Name), QStringLiteral("Close tab Renamed"));
    QVERIFY(HasEvent(QAccessible::NameChanged, QAccessible::Button, QStringLiteral("Close tab Renamed")));
    QSignalSpy closeRequested(m_bar.get(), &BrowserTabBarBase::tabCloseRequested);
    close->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(closeRequested.count(), 1);
    QCOMPARE(closeRequested.at(0).at(0).toInt(), 1);
}

void TstBrowserTabBarAccessibility::stripButtonsAreNamedWithTheirState_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<QStringList>("names");
    QTest::addRow("classic") << Kind::Classic << QStringList{"New tab"};
    QTest::addRow("scrolling") << Kind::Scrolling << QStringList{"Scroll tabs left", "Scroll tabs right"};
}

// The strip's own buttons follow the tabs in the list; each reports whether it can be
// pressed now.
void TstBrowserTabBarAccessibility::stripButtonsAreNamedWithTheirState()
{
    QFETCH(Kind, bar);
    QFETCH(QStringList, names);
    QVERIFY(ShowRowBar(30, 600));
    QAccessibleInterface *list = Iface(m_bar.get());
    QCOMPARE(list->childCount(), m_bar->count() + names.size());
    for (const QString &name : qAsConst(names)) {
        QAccessibleInterface *button = ButtonNamed(list, name);
        QVERIFY2(button, qPrintable(name));
        QCOMPARE(button->parent(), list);
        auto *widget = qobject_cast<QWidget *>(button->object());
        QVERIFY(widget);
        QCOMPARE(bool(button->state().disabled), !widget->isEnabled());
        widget->setEnabled(!widget->isEnabled());
        QCOMPARE(bool(button->state().disabled), !widget->isEnabled());
        widget->setEnabled(!widget->isEnabled());
    }
    if (bar == Kind::Classic) {
        QSignalSpy add(m_bar.get(), &BrowserTabBarBase::SigAddNewTab);
        ButtonNamed(list, names.first())->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(add.count(), 1);
    }
}

// Tabs the viewport has scrolled away are invisible and offscreen; brought into view,
// they are not.
void TstBrowserTabBarAccessibility::scrolledAwayTabsAreOffscreen()
{
    QVERIFY(ShowBar(Kind::Scrolling, 30, 600));
    auto *ex = static_cast<BrowserTabBarEx *>(m_bar.get());
    QAccessibleInterface *list = Iface(m_bar.get());
    const int last = m_bar->count() - 1;
    ex->showIndex(0);
    QTRY_VERIFY(!list->child(0)->state().invisible);
    QVERIFY(list->child(last)->state().invisible);
    QVERIFY(list->child(last)->state().offscreen);
    ex->showIndex(last);
    QTRY_VERIFY(!list->child(last)->state().invisible);
    QTRY_VERIFY(list->child(0)->state().invisible);
    QVERIFY(list->child(0)->state().offscreen);
}

// Every tab that a user sees whole is neither invisible nor offscreen, on both bars:
// the classic bar's last tab counts as whole although the strip ends where its
// neighbour would overlap it.
void TstBrowserTabBarAccessibility::tabsThatFitAreOnScreen_data()
{
    BothBars::AddRowsPerBar<int>("tabs", {{"one tab", 1}, {"four tabs", 4}});
}

void TstBrowserTabBarAccessibility::tabsThatFitAreOnScreen()
{
    QFETCH(int, tabs);
    QVERIFY(ShowRowBar(tabs));
    QAccessibleInterface *list = Iface(m_bar.get());
    for (int i = 0; i < m_bar->count(); ++i) {
        const QAccessible::State state = list->child(i)->state();
        QVERIFY2(!state.invisible && !state.offscreen, qPrintable(QStringLiteral("tab %1").arg(i)));
    }
}

// Too many tabs for the classic bar even at their smallest: the strip is cut off, and
// a tab cut by more than its overlap with the next is offscreen, one past the end
// invisible as well.
void TstBrowserTabBarAccessibility::classicTabsCutOffAreOffscreen()
{
    QVERIFY(ShowBar(Kind::Classic, 30, 600));
    QAccessibleInterface *list = Iface(m_bar.get());
    const int edge = m_bar->TabButton(m_bar->count() - 1)->parentWidget()->width();
    int whole = 0;
    int cut = 0;
    int gone = 0;
    for (int i = 0; i < m_bar->count(); ++i) {
        const QRect tab = m_bar->TabButton(i)->geometry();
        const QAccessible::State state = list->child(i)->state();
        if (tab.right() - 2 < edge) {
            QVERIFY2(!state.offscreen && !state.invisible, qPrintable(QStringLiteral("tab %1").arg(i)));
            ++whole;
        } else if (tab.left() < edge) {
            QVERIFY2(state.offscreen && !state.invisible, qPrintable(QStringLiteral("tab %1").arg(i)));
            ++cut;
        } else {
            QVERIFY2(state.offscreen && state.invisible, qPrintable(QStringLiteral("tab %1").arg(i)));
            ++gone;
        }
    }
    QVERIFY(whole > 0);
    QVERIFY(gone > 0);
    QVERIFY(cut <= 1);
}

// The classic strip makes the inner widgets of a tab only once it comes into view; a
// tab past the end still presents its close button: named after it, hidden unless the
// tab is current, where it would lie, and closing the tab when pressed.
void TstBrowserTabBarAccessibility::classicTabsPastTheEndKeepTheirCloseButton()
{
    QVERIFY(ShowBar(Kind::Classic, 30, 600));
    const int far = m_bar->count() - 1;
    const int near = 2;
    QVERIFY(!CloseButtonOf(m_bar->TabButton(far)));
    QVERIFY(CloseButtonOf(m_bar->TabButton(near)));
    QCOMPARE(m_bar->TabButton(far)->width(), m_bar->TabButton(near)->width());

    QAccessibleInterface *tab = Iface(m_bar.get())->child(far);
    QCOMPARE(tab->childCount(), 1);
    QAccessibleInterface *close = tab->child(0);
    QVERIFY(close);
    QCOMPARE(tab->child(0), close); // the same one each time
    QCOMPARE(tab->indexOfChild(close), 0);
    QCOMPARE(close->parent(), tab);
    QCOMPARE(close->role(), QAccessible::Button);
    QCOMPARE(close->text(QAccessible::Name), QStringLiteral("Close tab t%1").arg(far));
    // As the close buttons of the narrow tabs in view: hidden, without a rectangle.
    QAccessibleInterface *nearClose = Iface(m_bar.get())->child(near)->child(0);
    QVERIFY(nearClose->state().invisible);
    QVERIFY(close->state().invisible);
    QCOMPARE(close->rect(), nearClose->rect());
    // The current tab shows its close button, where it shows on a current tab in view.
    m_bar->setCurrentIndex(near);
    QVERIFY(!nearClose->state().invisible);
    const QPoint nearOffset = nearClose->rect().topLeft() - m_bar->TabButton(near)->mapToGlobal(QPoint(0, 0));
    const QSize nearSize = nearClose->rect().size();
    m_bar->setCurrentIndex(far);
    QVERIFY(!tab->child(0)->state().invisible);
    QCOMPARE(tab->child(0)->rect().topLeft() - m_bar->TabButton(far)->mapToGlobal(QPoint(0, 0)), nearOffset);
    QCOMPARE(tab->child(0)->rect().size(), nearSize);

    QSignalSpy closeRequested(m_bar.get(), &BrowserTabBarBase::tabCloseRequested);
    tab->child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(closeRequested.count(), 1);
    QCOMPARE(closeRequested.at(0).at(0).toInt(), far);
}

using Change = std::function<void(BrowserTabBarBase &)>;
Q_DECLARE_METATYPE(Change)

void TstBrowserTabBarAccessibility::changesAreAnnounced_data()
{
    QTest::addColumn<Kind>("bar");
    QTest::addColumn<Change>("change");
    QTest::addColumn<QAccessible::Event>("type");
    QTest::addColumn<QAccessible::Role>("role");
    QTest::addColumn<QString>("name");
    BothBars::ForEachBar([](const char *prefix, Kind kind) {
        QTest::addRow("%sadd", prefix) << kind << Change([](BrowserTabBarBase &b) { b.addTab(BothBars::WebTab("added")); })
                                       << QAccessible::ObjectCreated << QAccessible::PageTab << QStringLiteral("added");
        QTest::addRow("%sinsert", prefix) << kind
                                          << Change([](BrowserTabBarBase &b) { b.insertTab(1, BothBars::WebTab("inserted")); })
                                          << QAccessible::ObjectCreated << QAccessible::PageTab << QStringLiteral("inserted");
        QTest::addRow("%sremove", prefix) << kind << Change([](BrowserTabBarBase &b) { b.removeTab(2); })
                                          << QAccessible::ObjectDestroyed << QAccessible::PageTab << QStringLiteral("t2");
        QTest::addRow("%sremove current", prefix) << kind << Change([](BrowserTabBarBase &b) { b.removeTab(0); })
                                                  << QAccessible::ObjectDestroyed << QAccessible::PageTab << QStringLiteral("t0");
        QTest::addRow("%smove", prefix) << kind << Change([](BrowserTabBarBase &b) { b.moveTab(0, 2); })
                                        << QAccessible::ObjectReorder << QAccessible::PageTabList << QStringLiteral("Tabs");
        QTest::addRow("%sretitle", prefix) << kind << Change([](BrowserTabBarBase &b) { b.setTabText(1, "renamed"); })
                                           << QAccessible::NameChanged << QAccessible::PageTab << QStringLiteral("renamed");
        QTest::addRow("%sactivate", prefix) << kind << Change([](BrowserTabBarBase &b) { b.setCurrentIndex(3); })
                                            << QAccessible::Selection << QAccessible::PageTab << QStringLiteral("t3");
        QTest::addRow("%sclick", prefix)
            << kind << Change([](BrowserTabBarBase &b) { QTest::mousePress(b.TabButton(2), Qt::LeftButton, {}, QPoint(20, 10)); QTest::mouseRelease(b.TabButton(2), Qt::LeftButton, {}, QPoint(20, 10)); })
            << QAccessible::Selection << QAccessible::PageTab << QStringLiteral("t2");
    });
}

void TstBrowserTabBarAccessibility::changesAreAnnounced()
{
    QFETCH(Change, change);
    QFETCH(QAccessible::Event, type);
    QFETCH(QAccessible::Role, role);
    QFETCH(QString, name);
    QVERIFY(ShowRowBar(5));
    m_bar->setCurrentIndex(0);
    g_events.clear();
    change(*m_bar);
    QVERIFY2(HasEvent(type, role, name), qPrintable(Dump()));
    // A client that reads the tree again finds it matches the bar.
    QCOMPARE(Names(PageTabs(Iface(m_bar.get()))), BothBars::Titles(*m_bar));
}

void TstBrowserTabBarAccessibility::qtabbarAnnouncesTheSame_data()
{
    QTest::addColumn<QAccessible::Event>("type");
    QTest::addColumn<QString>("name");
    // Only what QTabBar announces itself (Qt 5 sends nothing when a tab is added,
    // removed, moved or retitled): activating a tab.
    QTest::addRow("QTabBar: activate") << QAccessible::Selection << QStringLiteral("t3");
}

void TstBrowserTabBarAccessibility::qtabbarAnnouncesTheSame()
{
    QFETCH(QAccessible::Event, type);
    QFETCH(QString, name);
    QTabBar bar;
    QVERIFY(ShowQTabBar(bar));
    g_events.clear();
    if (type == QAccessible::NameChanged)
        bar.setTabText(1, QStringLiteral("renamed"));
    else
        bar.setCurrentIndex(3);
    QVERIFY2(HasEvent(type, QAccessible::PageTab, name), qPrintable(Dump()));
}

KELTAB_TEST_MAIN(TstBrowserTabBarAccessibility)
#include "tst_browsertabbaraccessibility.moc"
