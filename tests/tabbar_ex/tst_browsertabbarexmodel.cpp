// SPDX-License-Identifier: MIT
// BrowserTabBarEx against a small reference model: a seeded random run of tab list
// changes, selections, close buttons answered by the host, leaves, timer expiries,
// drags and resizes, with a host that now and then changes the list from inside
// currentChanged. After every step the bar must agree with the model and keep its
// layout invariants.
//
// The seed is printed at the start and in every failure; KELTAB_SEED=<n> replays a run,
// KELTAB_MODEL_OPS=<n> changes its length. Timers are driven through their slots and no
// event is processed during the run, so a seed always replays the same run. Drags show
// the bar's popup, hence Xvfb.

#include "keltabtest.h"

#include "barwindowtest.h"
#include "browsertabbarex.h"
#include "browsertabbuttonex.h"
#include "browsertabmoveproxyex.h"
#include "dpitool.h"
#include "tabbarextestbar.h"

#include <QPointer>
#include <QRandomGenerator>
#include <QResizeEvent>

#include <memory>
#include <random>

using namespace TabTest;

namespace {

constexpr int kDefaultOperations = 20000;
constexpr int kMaxTabs = 48;

// A change the host made from inside currentChanged, replayed on the model at the
// moment the model expects that emission.
struct HostAnswer
{
    enum Kind { None, Insert, Remove } kind = None;
    int index = 0;
    TabDataPtr tab;
};

struct ModelTab
{
    TabDataPtr tab;
    bool fixedArea = false; // made while fewer than FixedTabCount() tabs existed
};

// The tab list as the bar must keep it, with the rules of its operations.
class Model
{
public:
    QList<ModelTab> tabs;
    TabDataPtr current;
    int noCurrent = -1;      // the index kept while no tab is current: -1, or the negative one set
    int fixedCount = 1;
    CloseActiveTypeEx closeType = CloseActiveRightEx;
    bool closing = false;    // a close button was used and no delay timeout followed yet
    TabDataPtr pressed;      // the tab under a press, while the popup holds the mouse
    bool dragMoved = false;  // the pressed tab has left the strip for the viewport
    int finishedDrags = 0;   // TabButtonMoved() calls
    QList<HostAnswer> *answers = nullptr;
    bool missedEmission = false;

    int IndexOf(const TabDataPtr &tab) const
    {
        for (int i = 0; i < tabs.size(); ++i) {
            if (tabs.at(i).tab == tab)
                return i;
        }
        return -1;
    }
    int CurrentIndex() const { return current ? IndexOf(current) : noCurrent; }

    void Insert(int index, const TabDataPtr &tab)
    {
        const bool fixedArea = tabs.size() < fixedCount;
        index = qBound(0, index, tabs.size());
        tabs.insert(index, ModelTab{tab, fixedArea});
    }

    void SetCurrent(int index)
    {
        // No lower bound: a negative index is kept as it is.
        if (index >= tabs.size() || index == CurrentIndex())
            return;
        current = index < 0 ? TabDataPtr() : tabs.at(index).tab;
        noCurrent = index < 0 ? index : -1;
        Emitted();
    }

    void Remove(int index)
    {
        if (index < 0 || index >= tabs.size())
            return;
        const TabDataPtr tab = tabs.at(index).tab;
        if (CurrentIndex() == index) {
            int next;
            if (closeType == CloseActiveLeftEx)
                next = index - 1;
            else
                next = index + 1 < tabs.size() ? index + 1 : index - 1;
            SetCurrent(next);
            index = IndexOf(tab);
            if (index < 0)
                return;
        }
        if (pressed == tab) {
            pressed.reset();
            dragMoved = false;
        }
        tabs.removeAt(index);
        if (current == tab) { // chosen again from inside currentChanged
            current.reset();
            noCurrent = -1;
            Emitted();
        }
    }

private:
    // One currentChanged: the host's answer to it, recorded when the bar emitted it.
    void Emitted()
    {
        if (!answers || answers->isEmpty()) {
            missedEmission = true;
            return;
        }
        const HostAnswer answer = answers->takeFirst();
        if (answer.kind == HostAnswer::Insert)
            Insert(answer.index, answer.tab);
        else if (answer.kind == HostAnswer::Remove)
            Remove(answer.index);
    }
};

} // namespace

class TstBrowserTabBarExModel : public BarWindowTest
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void initTestCase();
    void randomOperations_data();
    void randomOperations();

private:
    quint32 m_seed = 0;
    std::mt19937 m_random;
    QPointer<TestTabBarEx> m_bar;
    Model m_model;
    QList<HostAnswer> m_answers;
    int m_hostDepth = 0;
    int m_step = 0;
    QString m_operation;
    QStringList m_history; // the last operations, for the failure message
    int m_serial = 0;

    int Random(int bound) { return bound <= 1 ? 0 : int(m_random() % quint32(bound)); }
    int Between(int low, int high) { return low + Random(high - low + 1); }
    bool Chance(int percent) { return Random(100) < percent; }
    QString Where() const
    {
        return QStringLiteral("seed %1 (rerun with KELTAB_SEED=%1), step %2, %3 (after %4): ")
            .arg(m_seed)
            .arg(m_step)
            .arg(m_operation, m_history.join(QStringLiteral(", ")));
    }
    TabDataPtr NewTab();
    BrowserTabMoveProxyEx *Proxy() const
    {
        return qobject_cast<BrowserTabMoveProxyEx *>(QApplication::activePopupWidget());
    }
    QPoint PointerOutside() { return QPoint(Random(1500) + 50, 800); }

    void Step(bool inDrag);
    void AddTab();
    void InsertTab();
    void RemoveTab();
    void SetCurrent();
    void ClickClose();
    void Leave();
    void TimerExpiry();
    void Resize();
    void StartDrag();
    void MoveDrag();
    void EndDrag();
    void AdoptDragOrder(QString *problem);
    QString Check();

    void CloseLeftovers() override;
};

void TstBrowserTabBarExModel::initTestCase()
{
    const QByteArray fixed = qgetenv("KELTAB_SEED");
    bool ok = false;
    m_seed = fixed.toUInt(&ok);
    if (!ok)
        m_seed = QRandomGenerator::global()->generate();
    qInfo("random operations with seed %u (rerun with KELTAB_SEED=%u)", m_seed, m_seed);
}

// A run may end mid-drag.
void TstBrowserTabBarExModel::CloseLeftovers()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->hide();
}

TabDataPtr TstBrowserTabBarExModel::NewTab()
{
    // Mostly web pages; now and then a home page (never dragged) or a page of no URL.
    const int kind = Random(20);
    const TabData::TabType type = kind == 0 ? TabData::TabTypeHomePage
                                            : (kind == 1 ? TabData::TabTypeOther : TabData::TabTypeWeb);
    return MakeTab(type, QStringLiteral("T%1").arg(++m_serial));
}

void TstBrowserTabBarExModel::randomOperations_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<int>("fixedCount");
    QTest::addColumn<int>("closeType");
    QTest::addColumn<int>("share"); // per mille of the run's length
    // The run proper, and a shorter one with the other close rule, two fixed tabs and scaled sizes.
    QTest::newRow("1.0, one fixed tab, right neighbour") << 1.0 << 1 << int(CloseActiveRightEx) << 1000;
    QTest::newRow("1.5, two fixed tabs, left neighbour") << 1.5 << 2 << int(CloseActiveLeftEx) << 300;
}

void TstBrowserTabBarExModel::randomOperations()
{
    QFETCH(int, fixedCount);
    QFETCH(int, closeType);
    QFETCH(int, share);
    int total = kDefaultOperations;
    const int asked = qEnvironmentVariableIntValue("KELTAB_MODEL_OPS");
    if (asked > 0)
        total = asked;
    const int operations = qMax(1, total * share / 1000);
    m_random.seed(m_seed + quint32(fixedCount));
    KelTest::UseRowScale();

    m_window.reset(new QWidget);
    m_window->move(100, 100);
    m_bar = new TestTabBarEx(m_window.get());
    m_bar->fixedCount = fixedCount;
    m_bar->closeType = CloseActiveTypeEx(closeType);
    m_bar->SetFirstIndex(fixedCount);
    const QSize made = m_bar->size();
    m_bar->resize(BarWidthFor(900), m_bar->ButtonBarHeight());
    m_window->resize(m_bar->size());
    // As in Resize(): the window stays hidden, a shown one would send this.
    QResizeEvent resized(m_bar->size(), made);
    QCoreApplication::sendEvent(m_bar, &resized);
    m_model = Model();
    m_model.fixedCount = fixedCount;
    m_model.closeType = CloseActiveTypeEx(closeType);
    m_model.answers = &m_answers;
    m_answers.clear();

    // The host: closes what it is asked to close, at once; and now and then changes the
    // list from inside currentChanged.
    TestTabBarEx *bar = m_bar;
    connect(bar, &BrowserTabBarEx::tabCloseRequested, bar, [bar](int index) { bar->removeTab(index); });
    connect(bar, &BrowserTabBarEx::currentChanged, bar, [this, bar](int) {
        HostAnswer answer;
        if (m_hostDepth == 0 && Chance(4)) {
            if (Random(2) == 0 && bar->count() < kMaxTabs) {
                answer.kind = HostAnswer::Insert;
                answer.index = Between(0, bar->count());
                answer.tab = NewTab();
            } else if (bar->count() > 0) {
                answer.kind = HostAnswer::Remove;
                answer.index = Random(bar->count());
            }
        }
        m_answers.append(answer);
        ++m_hostDepth;
        if (answer.kind == HostAnswer::Insert)
            bar->insertTab(answer.index, answer.tab);
        else if (answer.kind == HostAnswer::Remove)
            bar->removeTab(answer.index);
        --m_hostDepth;
    });

    m_history.clear();
    for (m_step = 0; m_step < operations; ++m_step) {
        if (!m_operation.isEmpty()) {
            m_history.append(m_operation);
            if (m_history.size() > 10)
                m_history.removeFirst();
        }
        m_operation.clear();
        Step(bool(m_model.pressed));
        QVERIFY2(!m_model.missedEmission, qPrintable(Where() + QStringLiteral("currentChanged came too seldom")));
        QVERIFY2(m_answers.isEmpty(), qPrintable(Where() + QStringLiteral("currentChanged came too often")));
        QString problem;
        AdoptDragOrder(&problem);
        if (problem.isEmpty())
            problem = Check();
        QVERIFY2(problem.isEmpty(), qPrintable(Where() + problem));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (m_step % 997 == 0) {
            // Nothing kept beyond the tabs: removed buttons are gone once deleted.
            const int buttons = m_bar->findChildren<BrowserTabButtonEx *>().size();
            QVERIFY2(buttons == m_bar->count(),
                     qPrintable(Where() + QStringLiteral("%1 buttons for %2 tabs").arg(buttons).arg(m_bar->count())));
        }
    }
    if (m_model.pressed) {
        m_operation = QStringLiteral("final release");
        EndDrag();
    }
    QVERIFY2(Check().isEmpty(), qPrintable(Where() + Check()));
}

void TstBrowserTabBarExModel::Step(bool inDrag)
{
    if (inDrag) {
        const int roll = Random(100);
        if (roll < 50)
            MoveDrag();
        else if (roll < 62)
            EndDrag();
        else if (roll < 66)
            TimerExpiry();
        else if (roll < 72)
            SetCurrent();
        else if (roll < 78)
            AddTab();
        else if (roll < 82)
            InsertTab();
        else if (roll < 88)
            RemoveTab();
        else if (roll < 92)
            Resize();
        else if (roll < 96)
            Leave();
        else {
            // The host closes the tab the user holds.
            m_operation = QStringLiteral("removeTab(pressed)");
            const int index = m_model.IndexOf(m_model.pressed);
            m_bar->removeTab(index);
            m_model.Remove(index);
        }
        return;
    }
    const int count = m_bar->count();
    int roll = Random(100);
    // Keep the list between a handful and a few dozen tabs.
    if (count > kMaxTabs && roll < 25)
        roll += 25;
    if (count < 3 && roll >= 25 && roll < 50)
        roll -= 25;
    if (roll < 14)
        AddTab();
    else if (roll < 25)
        InsertTab();
    else if (roll < 36)
        RemoveTab();
    else if (roll < 50)
        ClickClose();
    else if (roll < 63)
        SetCurrent();
    else if (roll < 70)
        Leave();
    else if (roll < 79)
        TimerExpiry();
    else if (roll < 94)
        StartDrag();
    else
        Resize();
}

void TstBrowserTabBarExModel::AddTab()
{
    const TabDataPtr tab = NewTab();
    m_operation = QStringLiteral("addTab(%1)").arg(tab->GetTitle());
    const int index = m_bar->addTab(tab);
    m_model.Insert(m_model.tabs.size(), tab);
    if (index != m_model.IndexOf(tab))
        QFAIL(qPrintable(Where() + QStringLiteral("addTab returned %1").arg(index)));
}

void TstBrowserTabBarExModel::InsertTab()
{
    const TabDataPtr tab = NewTab();
    // Out of range now and then: taken as the nearest end.
    const int index = Between(-2, m_bar->count() + 2);
    m_operation = QStringLiteral("insertTab(%1, %2)").arg(index).arg(tab->GetTitle());
    m_bar->insertTab(index, tab);
    m_model.Insert(index, tab);
}

void TstBrowserTabBarExModel::RemoveTab()
{
    const int index = Between(-1, m_bar->count());
    m_operation = QStringLiteral("removeTab(%1)").arg(index);
    m_bar->removeTab(index);
    m_model.Remove(index);
}

void TstBrowserTabBarExModel::SetCurrent()
{
    const int index = Between(-2, m_bar->count());
    m_operation = QStringLiteral("setCurrentIndex(%1)").arg(index);
    m_bar->setCurrentIndex(index);
    m_model.SetCurrent(index);
}

void TstBrowserTabBarExModel::ClickClose()
{
    if (m_bar->count() == 0) {
        AddTab();
        return;
    }
    const int index = Random(m_bar->count());
    m_operation = QStringLiteral("close button of %1").arg(index);
    BrowserTabButtonEx *button = m_bar->TabButton(index);
    // What the close button's click does; the host answers with removeTab().
    button->SlotCloseClicked();
    m_model.closing = true;
    m_model.Remove(index);
}

void TstBrowserTabBarExModel::Leave()
{
    // Mostly with the pointer gone, sometimes still over the bar (onto a child).
    const bool outside = Random(4) != 0;
    m_operation = outside ? QStringLiteral("leave") : QStringLiteral("leave onto a child");
    QCursor::setPos(outside ? PointerOutside() : m_bar->mapToGlobal(QPoint(Random(m_bar->width()), 10)));
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(m_bar, &leave);
}

void TstBrowserTabBarExModel::TimerExpiry()
{
    // The timers' slots, called as the timers would call them: no time passes and no
    // event is processed, so that a seed replays the same run.
    if (m_bar->IsAnimating() && Random(3) != 0) {
        const int ticks = Between(1, 6);
        m_operation = QStringLiteral("%1 animation ticks").arg(ticks);
        for (int i = 0; i < ticks && m_bar->IsAnimating(); ++i)
            QVERIFY(QMetaObject::invokeMethod(m_bar, "SlotArrowTimeout"));
        return;
    }
    m_operation = QStringLiteral("delay timer");
    m_bar->SlotDelayTimeout();
    m_model.closing = false;
}

void TstBrowserTabBarExModel::Resize()
{
    const int width = BarWidthFor(Between(150, 950));
    m_operation = QStringLiteral("resize to %1").arg(width);
    const QSize old = m_bar->size();
    m_bar->resize(width, m_bar->height());
    // The window stays hidden (no painting in a long run); a shown one would send this.
    QResizeEvent event(m_bar->size(), old);
    QCoreApplication::sendEvent(m_bar, &event);
}

void TstBrowserTabBarExModel::StartDrag()
{
    if (m_bar->count() == 0) {
        AddTab();
        return;
    }
    const int index = Random(m_bar->count());
    m_operation = QStringLiteral("press on %1").arg(index);
    QPointer<BrowserTabButtonEx> button = m_bar->TabButton(index);
    const TabDataPtr tab = button->GetTabData();
    QCursor::setPos(PointerOutside());
    // What a left press on the tab emits: select, then (not for the home page) drag.
    Q_EMIT button->SigChangeClicked(tab);
    m_model.SetCurrent(m_model.IndexOf(tab));
    if (tab->IsHomePage())
        return;
    Q_EMIT button->SigButtonPressed();
    // Only a scrolling tab still in the list, made for the strip, is dragged.
    const int now = m_model.IndexOf(tab);
    if (now >= m_model.fixedCount && !m_model.tabs.at(now).fixedArea) {
        m_model.pressed = tab;
        m_model.dragMoved = false;
    }
}

void TstBrowserTabBarExModel::MoveDrag()
{
    BrowserTabMoveProxyEx *proxy = Proxy();
    if (!proxy)
        return;
    const int left = m_bar->mapToGlobal(QPoint(0, 0)).x();
    const int x = qBound(0, left + Between(-100, m_bar->width() + 100), 1599);
    m_operation = QStringLiteral("drag to %1").arg(x);
    QCursor::setPos(x, 800);
    Q_EMIT proxy->SigButtonMove();
    m_model.dragMoved = true;
}

void TstBrowserTabBarExModel::EndDrag()
{
    BrowserTabMoveProxyEx *proxy = Proxy();
    if (!proxy)
        return;
    m_operation = QStringLiteral("release");
    proxy->hide();
    m_model.pressed.reset();
    m_model.dragMoved = false;
    ++m_model.finishedDrags;
}

// A drag moves the pressed tab to another place, and only that tab: the model takes
// the bar's order once the other tabs are found in their order.
void TstBrowserTabBarExModel::AdoptDragOrder(QString *problem)
{
    QList<TabDataPtr> barOrder;
    for (int i = 0; i < m_bar->count(); ++i)
        barOrder << m_bar->GetTabData(i);
    QList<TabDataPtr> modelOrder;
    for (const ModelTab &tab : qAsConst(m_model.tabs))
        modelOrder << tab.tab;
    if (barOrder == modelOrder)
        return;
    const TabDataPtr moved = m_model.pressed;
    QList<TabDataPtr> barOthers = barOrder;
    QList<TabDataPtr> modelOthers = modelOrder;
    if (moved) {
        barOthers.removeAll(moved);
        modelOthers.removeAll(moved);
    }
    if (!moved || barOthers != modelOthers || barOrder.size() != modelOrder.size()) {
        QStringList have, want;
        for (const TabDataPtr &tab : qAsConst(barOrder))
            have << tab->GetTitle();
        for (const TabDataPtr &tab : qAsConst(modelOrder))
            want << tab->GetTitle();
        *problem = QStringLiteral("tabs %1, model %2").arg(have.join(QLatin1Char(' ')), want.join(QLatin1Char(' ')));
        return;
    }
    const int to = barOrder.indexOf(moved);
    if (to < m_model.fixedCount) {
        *problem = QStringLiteral("dragged tab moved to %1, left of firstIndex").arg(to);
        return;
    }
    m_model.tabs.move(m_model.IndexOf(moved), to);
}

QString TstBrowserTabBarExModel::Check()
{
    const int count = m_bar->count();
    if (count != m_model.tabs.size())
        return QStringLiteral("count %1, model %2").arg(count).arg(m_model.tabs.size());
    for (int i = 0; i < count; ++i) {
        if (m_bar->GetTabData(i) != m_model.tabs.at(i).tab)
            return QStringLiteral("tab %1 is %2, model %3")
                .arg(i)
                .arg(m_bar->GetTabData(i)->GetTitle(), m_model.tabs.at(i).tab->GetTitle());
    }
    const int current = m_model.CurrentIndex();
    if (m_bar->currentIndex() != current)
        return QStringLiteral("current %1, model %2").arg(m_bar->currentIndex()).arg(current);
    for (int i = 0; i < count; ++i) {
        if (m_bar->TabButton(i)->IsChecked() != (i == current))
            return QStringLiteral("tab %1 checked %2 with current %3").arg(i).arg(m_bar->TabButton(i)->IsChecked()).arg(current);
    }

    // Parents: by the number of tabs when each was made; a dragged tab floats in the viewport.
    for (int i = 0; i < count; ++i) {
        const ModelTab &tab = m_model.tabs.at(i);
        QWidget *expected = tab.fixedArea ? m_bar->FixedArea() : m_bar->Content();
        if (tab.tab == m_model.pressed && m_model.dragMoved)
            expected = m_bar->Viewport();
        if (m_bar->TabButton(i)->parentWidget() != expected)
            return QStringLiteral("tab %1 lies in %2").arg(i).arg(m_bar->TabButton(i)->parentWidget()->objectName());
        if (m_bar->TabButton(i)->IsPressed() != (tab.tab == m_model.pressed && m_model.dragMoved))
            return QStringLiteral("tab %1 pressed look %2").arg(i).arg(m_bar->TabButton(i)->IsPressed());
    }

    const bool popup = QApplication::activePopupWidget() != nullptr;
    if (popup != bool(m_model.pressed))
        return QStringLiteral("popup %1 with pressed tab %2").arg(popup).arg(bool(m_model.pressed));
    if (m_bar->movedCount != m_model.finishedDrags)
        return QStringLiteral("TabButtonMoved %1 times, drags %2").arg(m_bar->movedCount).arg(m_model.finishedDrags);

    // Outside a drag the scrolling tabs lie side by side from the strip's start.
    const int fixedCount = m_model.fixedCount;
    if (!m_model.pressed) {
        int x = 0;
        for (int i = fixedCount; i < count; ++i) {
            BrowserTabButtonEx *button = m_bar->TabButton(i);
            if (KelTest::LogicalPos(button) != QPoint(x, m_bar->ButtonTop()))
                return QStringLiteral("tab %1 at (%2, %3), expected x %4")
                    .arg(i).arg(KelTest::LogicalX(button)).arg(button->y()).arg(x);
            x += button->width();
        }
    }

    // The scroll offset: never right of 0, the strip where the offset says; outside
    // closing mode (when the strip may end short of a view scrolled to its end) within
    // [minOffset, 0].
    const int offset = m_bar->ScrollOffset();
    if (offset > 0)
        return QStringLiteral("scroll offset %1").arg(offset);
    if (KelTest::LogicalX(m_bar->Content()) != offset)
        return QStringLiteral("strip at %1, offset %2").arg(KelTest::LogicalX(m_bar->Content())).arg(offset);
    const int minOffset = m_bar->Viewport()->width() - m_bar->Content()->width();
    if (!m_model.closing && offset < qMin(minOffset, 0))
        return QStringLiteral("scroll offset %1 below %2").arg(offset).arg(minOffset);

    // The arrows exactly in overflow.
    const bool overflow = m_bar->IsOverflow();
    if (m_bar->LeftArrowFrame()->isHidden() == overflow || m_bar->RightArrowFrame()->isHidden() == overflow)
        return QStringLiteral("arrows %1/%2 with overflow %3")
            .arg(!m_bar->LeftArrowFrame()->isHidden())
            .arg(!m_bar->RightArrowFrame()->isHidden())
            .arg(overflow);

    // Outside closing mode every scrolling tab has the width the bar's width gives it.
    if (!m_model.closing && count > 0) {
        const int available = m_bar->width() - DpiTool::ScaleDefault(10) - m_bar->FixedTabTotalWidth();
        const int n = count - fixedCount;
        int width = m_bar->MaxButtonWidth();
        bool expectOverflow = false;
        if (n > 0)
            width = qMin(available / n, width);
        if (width < m_bar->MinButtonWidth()) {
            width = m_bar->MinButtonWidth();
            expectOverflow = true;
        }
        if (m_bar->ButtonWidth() != width || overflow != expectOverflow)
            return QStringLiteral("width %1 overflow %2, expected %3 %4")
                .arg(m_bar->ButtonWidth()).arg(overflow).arg(width).arg(expectOverflow);
        for (int i = fixedCount; i < count; ++i) {
            if (m_bar->TabButton(i)->width() != width)
                return QStringLiteral("tab %1 is %2 wide, expected %3").arg(i).arg(m_bar->TabButton(i)->width()).arg(width);
        }
    }
    return QString();
}

KELTAB_TEST_MAIN(TstBrowserTabBarExModel)
#include "tst_browsertabbarexmodel.moc"
