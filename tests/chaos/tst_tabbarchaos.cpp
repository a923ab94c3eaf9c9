// SPDX-License-Identifier: MIT
// Both tab strips under a seeded random run of everything a host and a user can do to
// them, with a hostile host: each step is one operation (tab list changes, bad
// indexes, titles and icons, loading, sizes down to nothing, show and hide, DPI
// changes, wheel, clicks, double clicks, close buttons, arrows, the new-tab button,
// drags, the context menu, leaving the bar and letting closing mode run out, the first
// index, policy answers that change from call to call). The host answers every signal,
// now and then by removing or adding tabs, changing the current tab, or deleting the
// bar (deleteLater, or a plain delete from currentChanged, tabCloseRequested and a
// menu command); a deleted bar ends the step and a new one is made.
//
// After every step the bar must agree with the driver's own list of its tabs, kept
// from the calls made and the signals heard, and with itself (buttons, checked state,
// geometry), and no unexpected Qt warning may have been printed.
//
// The seed is printed at the start and in every failure, with the step and the last
// operations; KELTAB_CHAOS_SEED and KELTAB_CHAOS_STEPS (chaosseed.h) choose the seed
// and the run's length per bar. The menus, the drags and the timer waits run event loops, so a
// replay follows the same operations but timers may land elsewhere between them.

#include "bothbars.h"
#include "chaosseed.h"
#include "keltabtest.h"
#include "steps.h"

#include "dpitool.h"
#include "tabmoveproxy.h"

#include <QAbstractButton>
#include <QMenu>
#include <QPointer>
#include <QSet>
#include <QWheelEvent>

#include <memory>
#include <random>

using BothBars::Kind;

namespace {

constexpr int kMaxTabs = 30;
constexpr int kHistory = 20;

// The warnings the library prints on purpose for bad input; any other warning fails.
const char *const kDeliberateWarnings[] = {
    "::insertTab: a null tab record is ignored",
};

// The host's policy, read by the bar through its virtuals; the driver changes it
// between operations, and in "flicker" mode FixedTabCount() answers differently on
// every call.
struct Policy
{
    int fixedCount = 0;
    bool flicker = false;
    int flickerCalls = 0;
    bool doubleClose = true;
    bool menuItems = true;
};

template <class Bar>
class ChaosBar : public Bar
{
public:
    ChaosBar(Policy *policy, QWidget *parent)
        : Bar(parent)
        , m_policy(policy)
    {
    }

protected:
    int FixedTabCount() override
    {
        return m_policy->flicker ? m_policy->flickerCalls++ % 3 : m_policy->fixedCount;
    }
    int FixedTabTotalWidth() override { return DpiTool::ScaleDefault(60) * m_policy->fixedCount; }
    bool IsDoubleCloseTab() const override { return m_policy->doubleClose; }
    bool CheckCloseCurItem(int) override { return m_policy->menuItems; }
    bool CheckCloseOtherItem(int index) override { return m_policy->menuItems && Bar::CheckCloseOtherItem(index); }
    bool CheckCloseLeftItem(int index) override { return m_policy->menuItems && Bar::CheckCloseLeftItem(index); }
    bool CheckCloseRightItem(int index) override { return m_policy->menuItems && Bar::CheckCloseRightItem(index); }
    bool CheckRecoveryItem() override { return m_policy->menuItems; }
    bool IsShowRecoveryItem() override { return true; }

private:
    Policy *m_policy;
};

// Warnings recorded while a step runs.
QStringList g_warnings;
QtMessageHandler g_previousHandler = nullptr;

void RecordWarnings(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg || type == QtCriticalMsg || type == QtFatalMsg) {
        for (const char *deliberate : kDeliberateWarnings) {
            if (message.contains(QLatin1String(deliberate)))
                return; // the caller's mistake, reported as documented
        }
        g_warnings << message;
    }
    if (g_previousHandler)
        g_previousHandler(type, context, message);
}

QMenu *ShownMenu()
{
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    return menu && menu->isVisible() ? menu : nullptr;
}

TabMoveProxy *ShownProxy()
{
    return qobject_cast<TabMoveProxy *>(QApplication::activePopupWidget());
}

} // namespace

class TstTabBarChaos : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();
    void randomRun_data();
    void randomRun();

private:
    // The driver's own record of one tab: what it must be called.
    struct RefTab
    {
        TabDataPtr tab;
        QString title;
    };

    quint32 m_seed = 0;
    std::mt19937 m_random;
    QSet<int> m_keep;          // the steps to run when a run is being cut down (empty: all)
    Kind m_kind = Kind::Classic;
    Policy m_policy;
    std::unique_ptr<QWidget> m_window;
    QPointer<BrowserTabBarBase> m_bar;
    QList<RefTab> m_tabs;
    TabDataPtr m_current;      // the current tab as the signals told it
    int m_noCurrent = -1;      // the negative index last reported while none is current
    bool m_closing = false;    // a close button or double click froze the widths
    bool m_policyChanged = false; // the bar lays out by the new policy at its next resize
    int m_hostDepth = 0;
    int m_serial = 0;
    int m_step = 0;
    int m_barsMade = 0;
    QStringList m_history;     // the last operations and the host's answers
    QString m_hostProblem;     // what the host saw go wrong inside a signal
    QList<TabDataPtr> m_removing; // the tabs of the removeTab() calls under way

    int Random(int bound) { return bound <= 1 ? 0 : int(m_random() % quint32(bound)); }
    int Between(int low, int high) { return low + Random(high - low + 1); }
    bool Chance(int percent) { return Random(100) < percent; }
    void Log(const QString &what);
    QString Report(const QString &problem) const;

    void NewBar();
    void ConnectHost();
    void HostHeard(const QString &signal, int index, bool mayDelete);
    void HostExtra(bool mayDelete);
    int RefIndexOf(const TabDataPtr &tab) const;
    int RefCurrentIndex() const;
    void FollowRemovals();
    TabDataPtr NewTab();

    // What the driver calls, keeping its record in step.
    void DoAdd();
    void DoInsert(int index, bool nullRecord = false);
    void DoRemove(int index);
    void DoMove(int from, int to);
    void DoSetCurrent(int index);

    void Step();
    /** A tab chosen at random, its button if shown (else null) and its index in @p index. */
    BrowserTabButtonBase *RandomShownTab(int *index);
    void ClickTab(bool twice);
    void ClickCloseButton();
    void ClickNamed(const QString &name);
    void Drag();
    void Menu();
    void Resize();
    void FlipDirection();
    void ChangeDpi();
    void Wheel();
    void Leave(bool wait);
    void ChangePolicy();

    void AdoptDragOrder(const TabDataPtr &dragged, bool fixedTab, int firstIndex, QString *problem);
    QString Check() const;
};

void TstTabBarChaos::initTestCase()
{
    m_seed = KelTest::ChaosSeed();
    m_keep = KelTest::ChaosKeptSteps();
    if (!m_keep.isEmpty())
        qInfo("cut-down run: %d of the steps", int(m_keep.size()));
    qInfo("chaos run with seed %u (replay with KELTAB_CHAOS_SEED=%u)", m_seed, m_seed);
    g_previousHandler = qInstallMessageHandler(RecordWarnings);
}

void TstTabBarChaos::cleanup()
{
    for (int i = 0; i < 3 && QApplication::activePopupWidget(); ++i)
        QApplication::activePopupWidget()->close();
    m_window.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    DpiTool::SetScaleFactor(1.0);
}

void TstTabBarChaos::cleanupTestCase()
{
    qInstallMessageHandler(g_previousHandler);
    DpiTool::SetScaleFactor(0);
}

void TstTabBarChaos::Log(const QString &what)
{
    m_history << QStringLiteral("%1: %2").arg(m_step).arg(what);
    while (m_keep.isEmpty() && m_history.size() > kHistory)
        m_history.removeFirst();
}

QString TstTabBarChaos::Report(const QString &problem) const
{
    return QStringLiteral("%1 bar, seed %2 (replay with KELTAB_CHAOS_SEED=%2), step %3: %4\nlast operations:\n  %5")
        .arg(QLatin1String(BothBars::Name(m_kind)))
        .arg(m_seed)
        .arg(m_step)
        .arg(problem, m_history.join(QStringLiteral("\n  ")));
}

TabDataPtr TstTabBarChaos::NewTab()
{
    // Mostly web pages; now and then a home page (never dragged) or a page of no URL.
    const int kind = Random(20);
    const TabData::TabType type = kind == 0 ? TabData::TabTypeHomePage
                                            : (kind == 1 ? TabData::TabTypeOther : TabData::TabTypeWeb);
    TabDataPtr tab(new TabData);
    tab->SetTabType(type);
    tab->SetTitle(QStringLiteral("T%1").arg(++m_serial));
    tab->SetData(tab->GetId());
    return tab;
}

int TstTabBarChaos::RefIndexOf(const TabDataPtr &tab) const
{
    for (int i = 0; i < m_tabs.size(); ++i) {
        if (m_tabs.at(i).tab == tab)
            return i;
    }
    return -1;
}

int TstTabBarChaos::RefCurrentIndex() const
{
    return m_current ? RefIndexOf(m_current) : m_noCurrent;
}

// removeTab() emits currentChanged for the neighbour before the tab leaves the list,
// and for "no tab" after it left, when the host made the closing tab current again: a
// tab under removal leaves the record once it has left the bar.
void TstTabBarChaos::FollowRemovals()
{
    for (const TabDataPtr &tab : qAsConst(m_removing)) {
        const int index = RefIndexOf(tab);
        if (index >= 0 && m_bar && m_bar->GetIndexByTabData(tab) < 0)
            m_tabs.removeAt(index);
    }
}

void TstTabBarChaos::randomRun_data()
{
    BothBars::AddRowPerBar("seeded run");
}

void TstTabBarChaos::randomRun()
{
    QFETCH(Kind, bar);
    m_kind = bar;
    // The suite's slice per bar: about 20 s in a release build, 30 s under the
    // sanitizers, on a lightly loaded machine.
    const int steps = KelTest::ChaosSteps(3000, 1500);
    m_policy = Policy();
    m_history.clear();
    m_barsMade = 0;
    DpiTool::SetScaleFactor(1.0);

    m_window.reset(new QWidget);
    m_window->move(0, 0);
    m_window->resize(1500, 80);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_step = 0;
    for (m_step = 1; m_step <= steps; ++m_step) {
        if (!m_keep.isEmpty() && !m_keep.contains(m_step))
            continue;
        // Each step draws from its own sequence, so that a step left out of a cut-down
        // run does not change what the steps after it do.
        std::seed_seq stepSeed{m_seed, quint32(bar == Kind::Classic ? 0 : 1), quint32(m_step)};
        m_random.seed(stepSeed);
        g_warnings.clear();
        m_hostProblem.clear();
        // The host may delete a new bar too, while the first tabs go in.
        while (!m_bar) {
            NewBar();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        Step();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!g_warnings.isEmpty())
            QFAIL(qPrintable(Report(QStringLiteral("Qt warned: ") + g_warnings.join(QStringLiteral("; ")))));
        if (!m_hostProblem.isEmpty())
            QFAIL(qPrintable(Report(m_hostProblem)));
        if (!m_bar) {
            Log(QStringLiteral("the bar is gone; a new one"));
            for (int i = 0; i < 3 && QApplication::activePopupWidget(); ++i)
                QApplication::activePopupWidget()->close();
            continue;
        }
        const QString problem = Check();
        if (!problem.isEmpty())
            QFAIL(qPrintable(Report(problem)));
    }
    qInfo("%s bar: %d steps, %d bars", BothBars::Name(bar), steps, m_barsMade);
}

void TstTabBarChaos::NewBar()
{
    ++m_barsMade;
    m_tabs.clear();
    m_current.reset();
    m_noCurrent = -1;
    m_closing = false;
    m_policyChanged = false;
    m_removing.clear();
    m_hostDepth = 0;
    if (m_kind == Kind::Classic)
        m_bar = new ChaosBar<BrowserTabBar>(&m_policy, m_window.get());
    else
        m_bar = new ChaosBar<BrowserTabBarEx>(&m_policy, m_window.get());
    m_bar->InitMenu();
    m_bar->SetFirstIndex(m_policy.fixedCount);
    m_bar->setGeometry(0, 0, Between(300, 1400), DpiTool::ScaleDefault(40));
    ConnectHost();
    m_bar->show();
    const int tabs = Random(8);
    for (int i = 0; i < tabs && m_bar; ++i)
        DoAdd();
    if (m_bar && m_bar->count() > 0)
        DoSetCurrent(Random(m_bar->count()));
}

// --- the host ---------------------------------------------------------------------

void TstTabBarChaos::ConnectHost()
{
    BrowserTabBarBase *bar = m_bar;
    // currentChanged first: the driver's record follows it before any answer.
    connect(bar, &BrowserTabBarBase::currentChanged, this, [this](int index) {
        FollowRemovals();
        if (index >= m_tabs.size()) {
            m_hostProblem = QStringLiteral("currentChanged(%1) with %2 tabs").arg(index).arg(m_tabs.size());
            return;
        }
        m_current = index >= 0 ? m_tabs.at(index).tab : TabDataPtr();
        m_noCurrent = index >= 0 ? -1 : index;
        HostHeard(QStringLiteral("currentChanged"), index, true);
    });
    connect(bar, &BrowserTabBarBase::tabCloseRequested, this, [this](int index) {
        if (index < 0 || index >= m_tabs.size()) {
            m_hostProblem = QStringLiteral("tabCloseRequested(%1) with %2 tabs").arg(index).arg(m_tabs.size());
            return;
        }
        HostHeard(QStringLiteral("tabCloseRequested"), index, true);
    });
    connect(bar, &BrowserTabBarBase::SigAddNewTab, this, [this] { HostHeard(QStringLiteral("SigAddNewTab"), -1, false); });
    connect(bar, &BrowserTabBarBase::SigCloseOtherTab, this,
            [this](int index) { HostHeard(QStringLiteral("SigCloseOtherTab"), index, true); });
    connect(bar, &BrowserTabBarBase::SigCloseLeftTab, this,
            [this](int index) { HostHeard(QStringLiteral("SigCloseLeftTab"), index, true); });
    connect(bar, &BrowserTabBarBase::SigCloseRightTab, this,
            [this](int index) { HostHeard(QStringLiteral("SigCloseRightTab"), index, true); });
    connect(bar, &BrowserTabBarBase::SigRecoverRecentlyTab, this,
            [this] { HostHeard(QStringLiteral("SigRecoverRecentlyTab"), -1, true); });
    if (auto *ex = qobject_cast<BrowserTabBarEx *>(bar)) {
        connect(ex, &BrowserTabBarEx::SigRefreshTab, this,
                [this](int index) { HostHeard(QStringLiteral("SigRefreshTab"), index, true); });
        connect(ex, &BrowserTabBarEx::SigAddFav, this,
                [this](int index, QPoint) { HostHeard(QStringLiteral("SigAddFav"), index, true); });
        connect(ex, &BrowserTabBarEx::SigCopyLink, this,
                [this](int index) { HostHeard(QStringLiteral("SigCopyLink"), index, true); });
        connect(ex, &BrowserTabBarEx::SigOpenInBrowser, this,
                [this](int index) { HostHeard(QStringLiteral("SigOpenInBrowser"), index, true); });
    }
}

void TstTabBarChaos::HostHeard(const QString &signal, int index, bool mayDelete)
{
    Log(QStringLiteral("  host hears %1(%2)").arg(signal).arg(index));
    if (!m_bar || m_hostDepth > 2)
        return;
    ++m_hostDepth;
    // What a browser does with the request, mostly.
    if (signal == QLatin1String("tabCloseRequested") && Chance(85)) {
        DoRemove(index);
    } else if (signal == QLatin1String("SigAddNewTab") && m_tabs.size() < kMaxTabs) {
        DoAdd();
    } else if (signal == QLatin1String("SigCloseOtherTab") && Chance(80)) {
        const TabDataPtr keep = index >= 0 && index < m_tabs.size() ? m_tabs.at(index).tab : TabDataPtr();
        for (int i = m_tabs.size() - 1; i >= 0 && m_bar; --i) {
            if (i < m_tabs.size() && m_tabs.at(i).tab != keep)
                DoRemove(i);
        }
    } else if (signal == QLatin1String("SigCloseLeftTab") && Chance(80)) {
        for (int i = qMin(index, m_tabs.size()) - 1; i >= 0 && m_bar; --i)
            DoRemove(i);
    } else if (signal == QLatin1String("SigCloseRightTab") && Chance(80)) {
        while (m_bar && index >= 0 && m_tabs.size() > index + 1)
            DoRemove(m_tabs.size() - 1);
    } else if (signal == QLatin1String("SigRecoverRecentlyTab") && m_tabs.size() < kMaxTabs) {
        DoInsert(Between(0, m_tabs.size()));
    }
    if (m_bar && Chance(10))
        HostExtra(mayDelete);
    --m_hostDepth;
}

// The host's unasked-for answers.
void TstTabBarChaos::HostExtra(bool mayDelete)
{
    const int roll = Random(100);
    if (roll < 30) {
        if (!m_tabs.isEmpty())
            DoRemove(Random(m_tabs.size()));
    } else if (roll < 55) {
        if (m_tabs.size() < kMaxTabs)
            DoInsert(Between(0, m_tabs.size()));
    } else if (roll < 85) {
        DoSetCurrent(Between(-2, m_tabs.size()));
    } else if (roll < 93 || !mayDelete) {
        Log(QStringLiteral("  host: deleteLater()"));
        m_bar->deleteLater();
    } else {
        Log(QStringLiteral("  host: delete"));
        delete m_bar.data();
    }
}

// --- the calls, with the driver's record ------------------------------------------

void TstTabBarChaos::DoAdd()
{
    if (!m_bar)
        return;
    const TabDataPtr tab = NewTab();
    const bool loading = Chance(20);
    Log(QStringLiteral("addTab(%1%2)").arg(tab->GetTitle(), loading ? QStringLiteral(", loading") : QString()));
    m_tabs.append(RefTab{tab, tab->GetTitle()});
    const int index = m_bar->addTab(tab, QString(), loading);
    if (m_bar && index != RefIndexOf(tab) && m_hostProblem.isEmpty())
        m_hostProblem = QStringLiteral("addTab returned %1, expected %2").arg(index).arg(RefIndexOf(tab));
}

void TstTabBarChaos::DoInsert(int index, bool nullRecord)
{
    if (!m_bar)
        return;
    if (nullRecord) {
        Log(QStringLiteral("insertTab(%1, null)").arg(index));
        const int result = m_bar->insertTab(index, TabDataPtr());
        if (result != -1)
            m_hostProblem = QStringLiteral("insertTab of a null record returned %1").arg(result);
        return;
    }
    const TabDataPtr tab = NewTab();
    Log(QStringLiteral("insertTab(%1, %2)").arg(index).arg(tab->GetTitle()));
    // An index out of range is taken as the nearest end.
    m_tabs.insert(qBound(0, index, m_tabs.size()), RefTab{tab, tab->GetTitle()});
    m_bar->insertTab(index, tab);
}

void TstTabBarChaos::DoRemove(int index)
{
    if (!m_bar)
        return;
    Log(QStringLiteral("removeTab(%1)").arg(index));
    const TabDataPtr tab = index >= 0 && index < m_tabs.size() ? m_tabs.at(index).tab : TabDataPtr();
    if (tab)
        m_removing << tab;
    m_bar->removeTab(index);
    // Inside, currentChanged may come first, and the host's answers to it; the tab
    // itself leaves the list after that, wherever it is by then.
    if (tab)
        m_removing.removeOne(tab);
    const int now = RefIndexOf(tab);
    if (tab && now >= 0)
        m_tabs.removeAt(now);
}

void TstTabBarChaos::DoMove(int from, int to)
{
    if (!m_bar)
        return;
    Log(QStringLiteral("moveTab(%1, %2)").arg(from).arg(to));
    if (from >= 0 && from < m_tabs.size() && to >= 0 && to < m_tabs.size())
        m_tabs.move(from, to);
    m_bar->moveTab(from, to);
}

void TstTabBarChaos::DoSetCurrent(int index)
{
    if (!m_bar)
        return;
    Log(QStringLiteral("setCurrentIndex(%1)").arg(index));
    const bool emits = index < m_tabs.size() && index != RefCurrentIndex();
    QSignalSpy changed(m_bar.data(), &BrowserTabBarBase::currentChanged);
    m_bar->setCurrentIndex(index);
    if (!m_bar || !m_hostProblem.isEmpty())
        return;
    // The host hears the emission first and may answer with emissions of its own,
    // which the spy, connected last, records before it.
    bool heard = false;
    for (const QList<QVariant> &emission : qAsConst(changed))
        heard = heard || emission.first().toInt() == index;
    if (emits && !heard)
        m_hostProblem = QStringLiteral("setCurrentIndex(%1) did not emit currentChanged(%1)").arg(index);
    else if (!emits && !changed.isEmpty())
        m_hostProblem = QStringLiteral("setCurrentIndex(%1) emitted currentChanged(%2)")
                            .arg(index)
                            .arg(changed.first().first().toInt());
}

// --- the driver -------------------------------------------------------------------

void TstTabBarChaos::Step()
{
    const int count = m_tabs.size();
    int roll = Random(1000);
    // Keep the list between a few and a few dozen tabs.
    if (count >= kMaxTabs && roll < 120)
        roll += 120;
    if (count < 2 && roll >= 120 && roll < 200)
        roll -= 120;

    if (roll < 70)
        DoAdd();
    else if (roll < 120)
        DoInsert(Between(-2, count + 2), Chance(5));
    else if (roll < 200)
        DoRemove(Between(-2, count + 1));
    else if (roll < 240)
        DoMove(Between(-1, count), Between(-1, count));
    else if (roll < 320)
        DoSetCurrent(Between(-3, count + 1));
    else if (roll < 350) {
        const int index = Between(-1, count);
        const QString title = Chance(15) ? QString() : QStringLiteral("title %1").arg(Random(1000));
        Log(QStringLiteral("setTabText(%1, \"%2\")").arg(index).arg(title));
        m_bar->setTabText(index, title);
        // Empty titles and bad indexes are ignored.
        if (!title.isEmpty() && index >= 0 && index < count)
            m_tabs[index].title = title;
    } else if (roll < 370) {
        const int index = Between(-1, count);
        const QString icon = Chance(20) ? QString() : QStringLiteral("/nonexistent/icon%1.png").arg(Random(5));
        Log(QStringLiteral("setTabIcon(%1, \"%2\")").arg(index).arg(icon));
        m_bar->setTabIcon(index, icon);
    } else if (roll < 400) {
        const int index = Between(-1, count);
        const bool start = Chance(50);
        Log(QStringLiteral("%1(%2)").arg(start ? QStringLiteral("LoadStart") : QStringLiteral("LoadFinished")).arg(index));
        if (start)
            m_bar->LoadStart(index);
        else
            m_bar->LoadFinished(index);
    } else if (roll < 450)
        Resize();
    else if (roll < 470) {
        const bool hide = m_bar->isVisible() && Chance(70);
        Log(hide ? QStringLiteral("hide") : QStringLiteral("show"));
        m_bar->setVisible(!hide);
    } else if (roll < 490)
        ChangeDpi();
    else if (roll < 530)
        Wheel();
    else if (roll < 620)
        ClickTab(false);
    else if (roll < 650)
        ClickTab(true);
    else if (roll < 720)
        ClickCloseButton();
    else if (roll < 750)
        ClickNamed(m_kind == Kind::Classic ? QStringLiteral("TabBarNewTabButton")
                                           : (Chance(50) ? QStringLiteral("TabButtonLeftArrowEx")
                                                         : QStringLiteral("TabButtonRightArrowEx")));
    else if (roll < 820)
        Drag();
    else if (roll < 860)
        Menu();
    else if (roll < 900)
        Leave(false);
    else if (roll < 940)
        Leave(true);
    else if (roll < 960) {
        const int first = Between(-1, 3);
        Log(QStringLiteral("SetFirstIndex(%1)").arg(first));
        m_bar->SetFirstIndex(first);
    } else if (roll < 980)
        ChangePolicy();
    else if (roll < 986)
        FlipDirection();
    else {
        Log(QStringLiteral("events"));
        QCoreApplication::processEvents();
    }
}

void TstTabBarChaos::Resize()
{
    const int roll = Random(10);
    QSize size;
    if (roll == 0)
        size = QSize(0, 0);
    else if (roll == 1)
        size = QSize(Between(1, 6), Between(1, 6));
    else if (roll == 2)
        size = QSize(Between(1, 60), DpiTool::ScaleDefault(40));
    else
        size = QSize(Between(100, 1500), DpiTool::ScaleDefault(40));
    Log(QStringLiteral("resize to %1x%2").arg(size.width()).arg(size.height()));
    if (size != m_bar->size())
        m_policyChanged = false;
    m_bar->resize(size);
}

// The host turns the bar's layout direction round (a language switch, say).
void TstTabBarChaos::FlipDirection()
{
    const Qt::LayoutDirection direction = m_bar->isRightToLeft() ? Qt::LeftToRight : Qt::RightToLeft;
    Log(direction == Qt::RightToLeft ? QStringLiteral("right to left") : QStringLiteral("left to right"));
    m_bar->setLayoutDirection(direction);
}

void TstTabBarChaos::ChangeDpi()
{
    static const double scales[] = {1.0, 1.25, 1.5, 2.0};
    const double scale = scales[Random(4)];
    Log(QStringLiteral("DPI scale %1").arg(scale));
    DpiTool::SetScaleFactor(scale);
    m_bar->AdjustForDpi();
    if (m_bar && Chance(70))
        m_bar->resize(m_bar->width(), DpiTool::ScaleDefault(40)); // the host's layout follows
}

void TstTabBarChaos::Wheel()
{
    const QPoint at(Random(qMax(1, m_bar->width())), Random(qMax(1, m_bar->height())));
    const int delta = Chance(50) ? 120 : -120;
    Log(QStringLiteral("wheel %1 at (%2, %3)").arg(delta).arg(at.x()).arg(at.y()));
    QWheelEvent wheel(QPointF(at), QPointF(m_bar->mapToGlobal(at)), QPoint(), QPoint(0, delta), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_bar, &wheel);
}

BrowserTabButtonBase *TstTabBarChaos::RandomShownTab(int *index)
{
    if (m_tabs.isEmpty())
        return nullptr;
    *index = Random(m_tabs.size());
    BrowserTabButtonBase *button = m_bar->TabButton(*index);
    return button && button->isVisible() ? button : nullptr;
}

void TstTabBarChaos::ClickTab(bool twice)
{
    int index = -1;
    const QPointer<BrowserTabButtonBase> button = RandomShownTab(&index);
    if (!button)
        return;
    const QPoint at(Random(qMax(1, button->width())), Random(qMax(1, button->height())));
    Log(QStringLiteral("%1 on tab %2").arg(twice ? QStringLiteral("double click") : QStringLiteral("click")).arg(index));
    QTest::mousePress(button, Qt::LeftButton, {}, at);
    // A movable tab's press hands the mouse to the bar's popup: the release goes there.
    if (TabMoveProxy *proxy = ShownProxy())
        QTest::mouseRelease(proxy, Qt::LeftButton);
    else if (button)
        QTest::mouseRelease(button, Qt::LeftButton, {}, at);
    if (twice && button && m_bar) {
        QTest::mouseDClick(button, Qt::LeftButton, {}, at);
        if (TabMoveProxy *proxy = ShownProxy())
            QTest::mouseRelease(proxy, Qt::LeftButton);
        m_closing = true;
    }
}

void TstTabBarChaos::ClickCloseButton()
{
    if (m_tabs.isEmpty())
        return;
    const int index = Random(m_tabs.size());
    BrowserTabButtonBase *button = m_bar->TabButton(index);
    if (!button)
        return;
    // Hovered, as a pointer on its way to the close button leaves it.
    QEvent enter(QEvent::Enter);
    QCoreApplication::sendEvent(button, &enter);
    for (QAbstractButton *close : button->findChildren<QAbstractButton *>()) {
        if (close->objectName().startsWith(QLatin1String("TabButtonCloseBtn")) && close->isVisible()) {
            Log(QStringLiteral("close button of tab %1").arg(index));
            m_closing = true;
            QTest::mouseClick(close, Qt::LeftButton);
            return;
        }
    }
}

void TstTabBarChaos::ClickNamed(const QString &name)
{
    auto *widget = m_bar->findChild<QWidget *>(name);
    if (!widget || !widget->isVisible())
        return;
    Log(QStringLiteral("click %1").arg(name));
    QTest::mouseClick(widget, Qt::LeftButton);
}

void TstTabBarChaos::Drag()
{
    int index = -1;
    const QPointer<BrowserTabButtonBase> button = RandomShownTab(&index);
    if (!button)
        return;
    const TabDataPtr dragged = m_tabs.at(index).tab;
    const QPoint press(button->width() / 2, button->height() / 2);
    Log(QStringLiteral("press tab %1").arg(index));
    QCursor::setPos(button->mapToGlobal(press));
    QTest::mousePress(button, Qt::LeftButton, {}, press);
    if (!m_bar)
        return;
    // The bars decide whether the tab may move once the press has made it current, so
    // after the host's answer to that (which may have moved the tab or the first index).
    // The classic bar keeps the tabs before the first index in place; the scrolling bar
    // keeps its fixed tabs (the first FixedTabCount(), and those made in the fixed area).
    const int firstIndex = m_bar->GetFirstIndex();
    int pressedIndex = -1;
    for (int i = 0; i < m_bar->count() && pressedIndex < 0; ++i) {
        if (m_bar->GetTabData(i) == dragged)
            pressedIndex = i;
    }
    bool fixedTab = pressedIndex < qMax(0, firstIndex);
    if (m_kind == Kind::Scrolling)
        fixedTab = (button && button->parentWidget()->objectName() == QLatin1String("TabBarFixedAreaEx"))
                   || (!m_policy.flicker && pressedIndex < m_policy.fixedCount);
    const int moves = Between(0, 4);
    for (int i = 0; i < moves && m_bar; ++i) {
        TabMoveProxy *proxy = ShownProxy();
        if (!proxy)
            break;
        const QPoint global = m_bar->mapToGlobal(QPoint(Between(-100, m_bar->width() + 100), m_bar->height() / 2));
        Log(QStringLiteral("  drag to %1").arg(global.x()));
        if (Chance(3))
            FlipDirection(); // mid-drag: the tab may jump, but stays in the bar
        QCursor::setPos(global);
        QMouseEvent move(QEvent::MouseMove, proxy->mapFromGlobal(global), global, Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(proxy, &move);
    }
    if (TabMoveProxy *proxy = ShownProxy()) {
        if (Chance(15)) {
            Log(QStringLiteral("  escape"));
            QTest::keyClick(proxy, Qt::Key_Escape);
        } else {
            Log(QStringLiteral("  release"));
            QTest::mouseRelease(proxy, Qt::LeftButton);
        }
    } else if (button) {
        QTest::mouseRelease(button, Qt::LeftButton, {}, press);
    }
    if (!m_bar)
        return;
    QString problem;
    AdoptDragOrder(dragged, fixedTab, firstIndex, &problem);
    if (!problem.isEmpty() && m_hostProblem.isEmpty())
        m_hostProblem = problem;
}

// A drag moves the dragged tab, and only that one; never a fixed tab, and never to an
// index below the first index.
void TstTabBarChaos::AdoptDragOrder(const TabDataPtr &dragged, bool fixedTab, int firstIndex, QString *problem)
{
    QList<TabDataPtr> barOrder;
    for (int i = 0; i < m_bar->count(); ++i)
        barOrder << m_bar->GetTabData(i);
    QList<TabDataPtr> refOrder;
    for (const RefTab &tab : qAsConst(m_tabs))
        refOrder << tab.tab;
    if (barOrder == refOrder)
        return;
    QList<TabDataPtr> barOthers = barOrder;
    QList<TabDataPtr> refOthers = refOrder;
    barOthers.removeAll(dragged);
    refOthers.removeAll(dragged);
    if (barOthers != refOthers || barOrder.size() != refOrder.size()) {
        *problem = QStringLiteral("a drag changed more than the dragged tab's place");
        return;
    }
    const int from = refOrder.indexOf(dragged);
    const int to = barOrder.indexOf(dragged);
    if (fixedTab || to < qMax(0, firstIndex)) {
        *problem = QStringLiteral("a drag moved a tab from %1 to %2 with first index %3").arg(from).arg(to).arg(firstIndex);
        return;
    }
    Log(QStringLiteral("  the drag moved it from %1 to %2").arg(from).arg(to));
    m_tabs.move(from, to);
}

void TstTabBarChaos::Menu()
{
    int index = -1;
    const QPointer<BrowserTabButtonBase> button = RandomShownTab(&index);
    if (!button)
        return;
    // The menu runs its own loop: the choice is made from inside it, on the menu.
    const int choice = Random(100);
    Log(QStringLiteral("menu of tab %1").arg(index));
    KelTest::Steps steps;
    steps.When(QStringLiteral("the menu"), [] { return ShownMenu() != nullptr; }, [this, choice] {
        QMenu *menu = ShownMenu();
        QList<QAction *> usable;
        for (QAction *action : menu->actions()) {
            if (action->isVisible() && action->isEnabled() && !action->isSeparator())
                usable << action;
        }
        if (choice < 20 || usable.isEmpty()) {
            Log(QStringLiteral("  dismissed"));
            menu->close();
            return;
        }
        QAction *action = usable.at(choice % usable.size());
        Log(QStringLiteral("  \"%1\"").arg(action->text()));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
    });
    steps.Start();
    QTest::mousePress(button, Qt::RightButton, {}, QPoint(10, 10));
    if (button)
        QTest::mouseRelease(button, Qt::RightButton, {}, QPoint(10, 10));
    if (QMenu *menu = ShownMenu())
        menu->close(); // shown but never chosen from: a host closing its window
}

void TstTabBarChaos::Leave(bool wait)
{
    Log(wait ? QStringLiteral("leave and wait out closing mode") : QStringLiteral("leave"));
    QCursor::setPos(m_bar->mapToGlobal(QPoint(m_bar->width() / 2, m_bar->height() + 300)));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(m_bar, &leave);
    if (!wait || !m_bar)
        return;
    // Mostly the delay timer's expiry at once, as it fires; now and then the real wait.
    auto *delay = m_bar->findChild<QTimer *>(QStringLiteral("TabBarDelayTimer"));
    if (delay && delay->isActive() && Chance(75)) {
        delay->stop();
        QVERIFY(QMetaObject::invokeMethod(delay, "timeout"));
    } else {
        QTest::qWait(230);
    }
    m_closing = false;
}

void TstTabBarChaos::ChangePolicy()
{
    m_policy.fixedCount = Random(3);
    m_policy.flicker = Chance(15);
    m_policy.doubleClose = Chance(70);
    m_policy.menuItems = Chance(80);
    // The bar cannot know; it asks again when it lays out next.
    m_policyChanged = true;
    Log(QStringLiteral("policy: %1 fixed%2, double click %3, menu items %4")
            .arg(m_policy.fixedCount)
            .arg(m_policy.flicker ? QStringLiteral(" (flickering)") : QString())
            .arg(m_policy.doubleClose)
            .arg(m_policy.menuItems));
}

// --- the invariants ---------------------------------------------------------------

QString TstTabBarChaos::Check() const
{
    const int count = m_bar->count();
    if (count != m_tabs.size())
        return QStringLiteral("count %1, expected %2").arg(count).arg(m_tabs.size());
    for (int i = 0; i < count; ++i) {
        const TabDataPtr tab = m_bar->GetTabData(i);
        if (tab != m_tabs.at(i).tab)
            return QStringLiteral("tab %1 is %2, expected %3")
                .arg(i)
                .arg(tab ? tab->GetTitle() : QStringLiteral("null"), m_tabs.at(i).tab->GetTitle());
        if (tab->GetTitle() != m_tabs.at(i).title)
            return QStringLiteral("tab %1 is titled %2, expected %3").arg(i).arg(tab->GetTitle(), m_tabs.at(i).title);
    }
    if (m_current && RefIndexOf(m_current) < 0)
        return QStringLiteral("the current tab %1 was removed without currentChanged").arg(m_current->GetTitle());
    const int current = RefCurrentIndex();
    if (m_bar->currentIndex() != current)
        return QStringLiteral("currentIndex %1, expected %2").arg(m_bar->currentIndex()).arg(current);

    // One button per tab; the current one checked and no other (removed buttons
    // waiting for deletion included).
    for (int i = 0; i < count; ++i) {
        BrowserTabButtonBase *button = m_bar->TabButton(i);
        if (!button || button->GetTabData() != m_tabs.at(i).tab)
            return QStringLiteral("tab %1 has no button of its own").arg(i);
        if (button->IsChecked() != (i == current))
            return QStringLiteral("tab %1 checked %2 with current %3").arg(i).arg(button->IsChecked()).arg(current);
    }
    int checked = 0;
    for (BrowserTabButtonBase *button : m_bar->findChildren<BrowserTabButtonBase *>())
        checked += button->IsChecked() ? 1 : 0;
    if (checked > (current >= 0 ? 1 : 0))
        return QStringLiteral("%1 buttons checked, current %2").arg(checked).arg(current);

    // Geometry, once the bar is shown at its height, with a stable policy and no drag;
    // across, at a width that holds every tab at its narrowest and without frozen widths.
    const bool popup = QApplication::activePopupWidget() != nullptr;
    if (!m_bar->isVisible() || m_policy.flicker || m_policyChanged || popup)
        return QString();
    const QRect bounds = m_bar->rect();
    const int fixed = qMin(m_policy.fixedCount, count);
    const int needed = DpiTool::ScaleDefault(60) * m_policy.fixedCount + (count - fixed) * m_bar->MinButtonWidth()
                       + DpiTool::ScaleDefault(120);
    const bool saneHeight = m_bar->height() >= DpiTool::ScaleDefault(40);
    const bool across = !m_closing && m_bar->width() >= needed;
    // The scrolling bar's frames, which clip its tabs: a tab scrolled out lies outside
    // the viewport, one in view inside the bar.
    for (const char *name : {"TabBarFixedAreaEx", "TabBarViewportEx"}) {
        const QWidget *frame = m_bar->findChild<QWidget *>(QLatin1String(name));
        if (frame && count > 0 && saneHeight && across && frame->isVisibleTo(m_bar) && !bounds.contains(frame->geometry()))
            return QStringLiteral("%1 at (%2, %3) %4x%5 outside the bar")
                .arg(QLatin1String(name))
                .arg(frame->x()).arg(frame->y()).arg(frame->width()).arg(frame->height());
    }
    for (int i = 0; i < count && saneHeight; ++i) {
        const BrowserTabButtonBase *button = m_bar->TabButton(i);
        if (!button->isVisibleTo(m_bar))
            continue;
        const QRect rect(button->mapTo(m_bar.data(), QPoint(0, 0)), button->size());
        if (rect.top() < bounds.top() || rect.bottom() > bounds.bottom())
            return QStringLiteral("tab %1 at (%2, %3) %4x%5 outside the bar's %6 pixels height")
                .arg(i).arg(rect.x()).arg(rect.y()).arg(rect.width()).arg(rect.height()).arg(bounds.height());
        if (across && (rect.left() < bounds.left() || rect.right() > bounds.right()))
            return QStringLiteral("tab %1 at x %2, %3 wide, outside the bar's %4 pixels width")
                .arg(i).arg(rect.x()).arg(rect.width()).arg(bounds.width());
    }
    return QString();
}

KELTAB_TEST_MAIN(TstTabBarChaos)
#include "tst_tabbarchaos.moc"
