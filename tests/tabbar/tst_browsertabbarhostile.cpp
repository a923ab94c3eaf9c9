// SPDX-License-Identifier: MIT
// The classic tab strip under hostile call orders and a randomized model of its tab list.

#include "keltabtest.h"
#include "classicbartest.h"

#include <QRandomGenerator>

using namespace ClassicTest;

class TstBrowserTabBarHostile : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("SetsThePointer", "QCursor::setPos")

private Q_SLOTS:
    void init();
    void cleanup();

    // hostile call orders
    void removeInsideCurrentChangedDuringRemove();
    void removeInsideTabCloseRequested();
    void insertInsideCurrentChanged();
    void currentSetBackToClosingTab();
    void nullRecordsAreHarmless();
    void removedButtonCannotReachTheBar();
    void barDeletedWithRelayoutTimerLive();
    void barDeletedWithProxyShown();
    void barDeletedWithButtonsUnderThePointer();

    // randomized model
    void randomizedModel_data();
    void randomizedModel();

private:
    std::unique_ptr<Environment> m_env;
};

void TstBrowserTabBarHostile::init()
{
    m_env = std::make_unique<Environment>();
}

void TstBrowserTabBarHostile::cleanup()
{
    FlushDeletes();
    m_env.reset();
}


// --- hostile call orders --------------------------------------------------------

void TstBrowserTabBarHostile::removeInsideCurrentChangedDuringRemove()
{
    auto bar = MakeBar(800, 4);
    bar->setCurrentIndex(1);
    const TabDataPtr last = bar->GetTabData(3);
    bool once = true;
    // The host answers the new current tab (index 2) by closing it too.
    connect(bar.get(), &BrowserTabBar::currentChanged, this, [&bar, &once](int index) {
        if (once && index == 2) {
            once = false;
            bar->removeTab(2);
        }
    });
    bar->removeTab(1);
    QCOMPARE(bar->count(), 2);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t0"), QStringLiteral("t3")}));
    QCOMPARE(bar->GetCurrentTabData(), last);
    QVERIFY(OnlyCheckedIs(bar.get(), bar->currentIndex()));
    QCOMPARE(Xs(bar.get()), QList<int>({0, 162}));
}

void TstBrowserTabBarHostile::removeInsideTabCloseRequested()
{
    auto bar = MakeBar(800, 4);
    bar->setCurrentIndex(3);
    // The host closes every tab it is asked about, and one more.
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), [&bar](int index) {
        bar->removeTab(index);
        bar->removeTab(0);
    });
    ClickClose(bar.get(), 3);
    QCOMPARE(bar->count(), 2);
    QCOMPARE(bar->GetAllTabTitles(), QStringList({QStringLiteral("t1"), QStringLiteral("t2")}));
    QCOMPARE(bar->currentIndex(), 1);
    QVERIFY(OnlyCheckedIs(bar.get(), 1));
    FlushDeletes();
    QCOMPARE(Buttons(bar.get()).size(), 2);
}

void TstBrowserTabBarHostile::insertInsideCurrentChanged()
{
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(2);
    bool once = true;
    connect(bar.get(), &BrowserTabBar::currentChanged, this, [&bar, &once] {
        if (once) {
            once = false;
            bar->insertTab(0, MakeTab(QStringLiteral("inserted")));
        }
    });
    bar->removeTab(2);
    QCOMPARE(bar->GetAllTabTitles(),
             QStringList({QStringLiteral("inserted"), QStringLiteral("t0"), QStringLiteral("t1")}));
    QCOMPARE(bar->GetCurrentTabData()->GetTitle(), QStringLiteral("t1"));
    QVERIFY(OnlyCheckedIs(bar.get(), bar->currentIndex()));
}

void TstBrowserTabBarHostile::currentSetBackToClosingTab()
{
    auto bar = MakeBar(800, 3);
    bar->setCurrentIndex(1);
    bool once = true;
    connect(bar.get(), &BrowserTabBar::currentChanged, this, [&bar, &once] {
        if (once) {
            once = false;
            bar->setCurrentIndex(1);
        }
    });
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    bar->removeTab(1);
    QCOMPARE(bar->count(), 2);
    // The tab made current again is gone: no tab is current, and the host hears so.
    QCOMPARE(bar->currentIndex(), -1);
    QCOMPARE(changed.last().first().toInt(), -1);
    QVERIFY(OnlyCheckedIs(bar.get(), -1));
}

void TstBrowserTabBarHostile::nullRecordsAreHarmless()
{
    auto bar = MakeBar(800, 2);
    bar->InitMenu();
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotChangeClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotCloseClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotMenuClicked", Q_ARG(TabDataPtr, TabDataPtr())));
    QVERIFY(QMetaObject::invokeMethod(bar.get(), "SlotButtonPressed"));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(closeTab.count(), 0);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(bar->GetIndexByTabData(TabDataPtr()), -1);
}

void TstBrowserTabBarHostile::removedButtonCannotReachTheBar()
{
    auto bar = MakeBar(800, 3);
    bar->InitMenu();
    BrowserTabButton *removed = ButtonAt(bar.get(), 1);
    const TabDataPtr tab = removed->GetTabData();
    bar->removeTab(1);
    QVERIFY(removed->isHidden());
    // A twin record in the list would match; the removed button's signals must not.
    bar->addTab(MakeTab(QStringLiteral("twin"), tab->GetTabType(), tab->GetData()));
    QSignalSpy changed(bar.get(), &BrowserTabBar::currentChanged);
    QSignalSpy closeTab(bar.get(), &BrowserTabBar::tabCloseRequested);
    Q_EMIT removed->SigChangeClicked(tab);
    Q_EMIT removed->SigCloseClicked(tab);
    Q_EMIT removed->SigMenuClicked(tab);
    Q_EMIT removed->SigButtonPressed();
    QCOMPARE(changed.count(), 0);
    QCOMPARE(closeTab.count(), 0);
    QVERIFY(!QApplication::activePopupWidget());
}

void TstBrowserTabBarHostile::barDeletedWithRelayoutTimerLive()
{
    auto bar = MakeBar(800, 10);
    connect(bar.get(), &BrowserTabBar::tabCloseRequested, bar.get(), &BrowserTabBar::removeTab);
    ClickClose(bar.get(), 3);
    LeaveBar(bar.get());
    QVERIFY(RelayoutTimer(bar.get())->isActive());
    bar.reset();
    QTest::qWait(260);
}

void TstBrowserTabBarHostile::barDeletedWithProxyShown()
{
    auto bar = MakeBar(800, 3);
    SlotDrag drag(bar.get(), 1);
    drag.MoveLeftEdgeTo(200);
    QVERIFY(ActiveProxy());
    bar.reset();
    QVERIFY(!QApplication::activePopupWidget());
    QVERIFY(QApplication::topLevelWidgets().isEmpty() || !ActiveProxy());
}

void TstBrowserTabBarHostile::barDeletedWithButtonsUnderThePointer()
{
    auto bar = MakeBar(800, 3);
    BrowserTabButton *button = ButtonAt(bar.get(), 1);
    QCursor::setPos(button->mapToGlobal(button->rect().center()));
    SendEvent(button, QEvent::Enter);
    bar->removeTab(0);
    bar.reset();
}

// --- randomized model -----------------------------------------------------------

namespace {

/**
 * The reference: the tab list, the current index and the layout state the bar must
 * reach after each operation, computed on its own from the rules.
 */
class Model
{
public:
    QList<TabDataPtr> tabs;
    int current = -1;
    bool frozen = false;      // closed by mouse since the last full fit
    bool frozenLast = false;
    bool timerPending = false;
    int buttonWidth = 0;
    int extra = 0;
    int contentWidth = 0;
    int barWidth = 0;
    int fixedCount = 0;
    int fixedWidth = 0;
    int newTabWidth = 0;
    CloseActiveType closeType = CloseActiveNext;

    QHash<const TabData *, int> widthOf;  // every button's expected width

    int Count() const { return tabs.size(); }

    // Widths are handed out on every fit; otherwise each tab keeps its own.
    void AssignWidths()
    {
        for (int i = 0; i < tabs.size(); ++i) {
            int width;
            if (i < fixedCount)
                width = (fixedWidth - S(2)) / fixedCount + S(2);
            else
                width = buttonWidth + ((i - fixedCount) < extra ? 1 : 0);
            widthOf.insert(tabs.at(i).data(), width);
        }
    }

    void Compute(int available)
    {
        const int n = tabs.size();
        int fit = (available - fixedWidth) / (S(60) - S(2));
        fit = qMin(fit, n - fixedCount);
        buttonWidth = S(164);
        if (fit > 0)
            buttonWidth = qMin((available - fixedWidth) / fit + S(2), S(164));
        extra = 0;
        if (buttonWidth != S(164))
            extra = qMax(0, available - (buttonWidth - S(2)) * fit - fixedWidth);
    }

    void UpdateContent()
    {
        if (tabs.isEmpty())
            return;  // the bar only places what it has
        const int n = tabs.size();
        int width = fixedWidth;
        if (n > fixedCount)
            width += (buttonWidth - S(2)) * (n - fixedCount) + extra;
        contentWidth = qMax(0, qMin(width, barWidth - S(4) - newTabWidth));
    }

    void FullFit()
    {
        frozen = false;
        frozenLast = false;
        if (tabs.isEmpty())
            return;
        Compute(barWidth - S(4) - newTabWidth);
        AssignWidths();
        UpdateContent();
    }

    void Add(const TabDataPtr &tab)
    {
        tabs.append(tab);
        FullFit();
    }

    void Insert(int index, const TabDataPtr &tab)
    {
        index = qBound(0, index, tabs.size());
        tabs.insert(index, tab);
        if (index <= current)
            ++current;
        FullFit();
    }

    void SetCurrent(int index)
    {
        if (index >= tabs.size())
            return;
        current = qMax(index, -1);
    }

    int X(int index) const
    {
        return ExpectedXs(tabs.size(), fixedCount, fixedWidth, buttonWidth, extra).at(index);
    }

    int W(int index) const { return widthOf.value(tabs.at(index).data()); }

    /**
     * Where the held tab at @p held goes when its left edge is at @p left, by the
     * reordering rule; -1 for nowhere. The strip spans the whole bar while dragging.
     */
    int DragTarget(int held, int left, int firstIndex) const
    {
        const int n = tabs.size();
        const int lowest = qMax(0, firstIndex);
        const int right = left + W(held);
        if (left <= 0)
            return lowest >= held ? -1 : lowest;
        if (right >= barWidth)
            return held == n - 1 ? -1 : n - 1;
        for (int j = lowest; j < held; ++j) {
            if (X(j) <= left && left <= X(j) + W(j)) {
                int target = j + (left > X(j) + W(j) / 3 ? 1 : 0);
                target = qMin(target, n - 1);
                return (target == held || target == 0) ? -1 : target;
            }
        }
        for (int j = held + 1; j < n; ++j) {
            if (X(j) <= right && right <= X(j) + W(j)) {
                int target = j - (right < X(j) + (2 * W(j)) / 3 ? 1 : 0);
                target = qMax(target, 0);
                return (target == held || target == 0) ? -1 : target;
            }
        }
        return -1;
    }

    /** The held tab's left edge follows the pointer, kept inside the bar. */
    int HeldX(int held, int wanted) const { return qMin(qMax(wanted, 0), barWidth - W(held)); }

    void Remove(int index)
    {
        if (index < 0 || index >= tabs.size())
            return;
        if (index == current) {
            if (closeType == CloseActivePrev)
                current = index - 1;
            else
                current = index + 1 < tabs.size() ? index + 1 : index - 1;
        }
        tabs.removeAt(index);
        if (index < current)
            --current;
        if (frozen) {
            if (frozenLast) {
                Compute(contentWidth);
                AssignWidths();
            }
            UpdateContent();
        } else {
            FullFit();
        }
    }
};

} // namespace

void TstBrowserTabBarHostile::randomizedModel_data()
{
    KelTest::AddScaleColumn();
    QTest::addColumn<int>("fixedCount");
    QTest::addColumn<int>("fixedWidth");
    QTest::addColumn<int>("firstIndex");
    QTest::addColumn<int>("closeType");
    QTest::newRow("plain") << 1.0 << 0 << 0 << 0 << 0;
    QTest::newRow("fixed tabs, previous neighbour") << 1.0 << 2 << 180 << 2 << 1;
    QTest::newRow("at 1.5") << 1.5 << 0 << 0 << 1 << 0;
}

void TstBrowserTabBarHostile::randomizedModel()
{
    QFETCH(int, fixedCount);
    QFETCH(int, fixedWidth);
    QFETCH(int, firstIndex);
    QFETCH(int, closeType);

    bool seedOk = false;
    quint32 seed = qEnvironmentVariable("KELTAB_SEED").toUInt(&seedOk);
    if (!seedOk)
        seed = QRandomGenerator::global()->generate();
    int operations = qEnvironmentVariableIntValue("KELTAB_MODEL_OPERATIONS");
    if (operations <= 0) {
#ifdef __SANITIZE_ADDRESS__
        // Three rows of 7,000 still make more than 20,000 a run, in a fraction of
        // the time that instrumented allocations take.
        operations = 7000;
#else
        operations = 20000;
#endif
    }
    // Printed on failure only, so that a failing run can be repeated with KELTAB_SEED.
    struct SeedReport
    {
        quint32 seed;
        int step = 0;
        ~SeedReport()
        {
            if (QTest::currentTestFailed())
                qInfo("randomizedModel: KELTAB_SEED=%u reproduces this run (failed at step %d)", seed, step);
        }
    } report{seed};

    KelTest::UseRowScale();
    QRandomGenerator rng(seed);
    Model model;
    model.fixedCount = fixedCount;
    model.fixedWidth = fixedWidth;
    model.closeType = static_cast<CloseActiveType>(closeType);

    TestBar bar;
    bar.fixedCount = fixedCount;
    bar.fixedWidth = fixedWidth;
    bar.closeType = model.closeType;
    bar.SetFirstIndex(firstIndex);
    bar.InitMenu();
    model.barWidth = S(700);
    bar.setGeometry(100, 100, model.barWidth, bar.minimumHeight());
    bar.show();
    model.newTabWidth = NewTabButton(&bar)->width();
    QTimer *timer = RelayoutTimer(&bar);
    QMenu *menu = MenuOf(&bar);

    // The host: removes what it is asked to, most of the time, keeping the model in step.
    bool hostAccepts = true;
    auto hostRemove = [&bar, &model](int index) {
        model.Remove(index);
        bar.removeTab(index);
    };
    connect(&bar, &BrowserTabBar::tabCloseRequested, this, [&](int index) {
        if (hostAccepts)
            hostRemove(index);
    });
    connect(&bar, &BrowserTabBar::SigCloseOtherTab, this, [&](int index) {
        for (int i = bar.count() - 1; i >= 0; --i) {
            if (i != index)
                hostRemove(i);
        }
    });
    connect(&bar, &BrowserTabBar::SigCloseRightTab, this, [&](int index) {
        while (index >= 0 && bar.count() > index + 1)
            hostRemove(bar.count() - 1);
    });
    connect(&bar, &BrowserTabBar::SigCloseLeftTab, this, [&](int index) {
        for (int i = index - 1; i >= 0; --i)
            hostRemove(i);
    });

    // The user only reaches tabs that show: those that start inside the strip.
    auto pickVisible = [&bar, &rng]() -> int {
        QList<int> visible;
        const auto buttons = Buttons(&bar);
        for (int i = 0; i < buttons.size(); ++i) {
            if (buttons.at(i)->x() + S(12) < qMin(Content(&bar)->width(), bar.width()))
                visible << i;
        }
        return visible.isEmpty() ? -1 : visible.at(int(rng.bounded(visible.size())));
    };
    // A point of the tab that lies inside the bar.
    auto pointOn = [&bar](int index) {
        BrowserTabButton *button = ButtonAt(&bar, index);
        const int right = qMin(button->width(), bar.width() - button->x()) - 1;
        return QPoint(qMin(S(10), right), button->height() / 2);
    };

    int serial = 0;
    auto newTab = [&serial] { return MakeTab(QStringLiteral("tab %1").arg(++serial)); };

    QStringList history;  // the last operations, for the failure message
    auto check = [&](const char *operation) -> bool {
        const auto fail = [&](const QString &what) {
            const QString message = QStringLiteral("%1 at step %2 after %3 (KELTAB_SEED=%4; before: %5)")
                                        .arg(what).arg(report.step).arg(QLatin1String(operation)).arg(seed)
                                        .arg(history.join(QStringLiteral(", ")));
            QTest::qFail(message.toUtf8().constData(), __FILE__, __LINE__);
            return false;
        };
        if (bar.count() != model.Count())
            return fail(QStringLiteral("count %1 != %2").arg(bar.count()).arg(model.Count()));
        if (timer->isActive() != model.timerPending)
            return fail(QStringLiteral("relayout timer %1").arg(timer->isActive() ? "running" : "stopped"));
        for (int i = 0; i < model.Count(); ++i) {
            if (bar.GetTabData(i) != model.tabs.at(i))
                return fail(QStringLiteral("tab %1 differs").arg(i));
        }
        if (bar.currentIndex() != model.current)
            return fail(QStringLiteral("current %1 != %2").arg(bar.currentIndex()).arg(model.current));
        const auto buttons = Buttons(&bar);
        for (int i = 0; i < buttons.size(); ++i) {
            if (!buttons.at(i))
                return fail(QStringLiteral("no button for tab %1").arg(i));
            if (buttons.at(i)->IsChecked() != (i == model.current))
                return fail(QStringLiteral("checked state of tab %1").arg(i));
            if (buttons.at(i)->IsPressed())
                return fail(QStringLiteral("tab %1 still held").arg(i));
        }
        if (model.Count() == 0)
            return true;
        if (bar.ButtonWidth() != model.buttonWidth)
            return fail(QStringLiteral("button width %1 != %2").arg(bar.ButtonWidth()).arg(model.buttonWidth));
        // Left to right by the placement rule.
        const QList<int> xs = ExpectedXs(model.Count(), fixedCount, fixedWidth, model.buttonWidth, model.extra);
        for (int i = 0; i < buttons.size(); ++i) {
            if (buttons.at(i)->pos() != QPoint(xs.at(i), S(4)) || buttons.at(i)->height() != S(32))
                return fail(QStringLiteral("tab %1 at (%2, %3), expected x %4")
                                .arg(i).arg(buttons.at(i)->x()).arg(buttons.at(i)->y()).arg(xs.at(i)));
        }
        for (int i = 0; i < buttons.size(); ++i) {
            const int expected = model.widthOf.value(model.tabs.at(i).data());
            if (buttons.at(i)->width() != expected)
                return fail(QStringLiteral("tab %1 is %2 wide, expected %3").arg(i).arg(buttons.at(i)->width()).arg(expected));
        }
        if (Content(&bar)->width() != model.contentWidth)
            return fail(QStringLiteral("strip width %1 != %2").arg(Content(&bar)->width()).arg(model.contentWidth));
        KelPushButtonHover *plus = NewTabButton(&bar);
        const int plusX = (model.buttonWidth != S(164) && !model.frozen) ? model.barWidth - plus->width()
                                                                        : model.contentWidth + S(4);
        if (plus->pos() != QPoint(plusX, S(4) + (S(32) - plus->height()) / 2) || plus->isHidden())
            return fail(QStringLiteral("new-tab button at x %1, expected %2").arg(plus->x()).arg(plusX));
        return true;
    };

    for (report.step = 0; report.step < operations; ++report.step) {
        const int n = model.Count();
        const int roll = int(rng.bounded(100));
        const char *operation = "";
        if (roll < 14 && n < 30) {
            operation = "addTab";
            const TabDataPtr tab = newTab();
            model.Add(tab);
            bar.addTab(tab);
        } else if (roll < 24 && n < 30) {
            operation = "insertTab";
            const int index = int(rng.bounded(n + 3)) - 1;
            const TabDataPtr tab = newTab();
            model.Insert(index, tab);
            bar.insertTab(index, tab);
        } else if (roll < 34) {
            operation = "removeTab";
            const int index = int(rng.bounded(n + 2)) - 1;
            model.Remove(index);
            bar.removeTab(index);
        } else if (roll < 46) {
            operation = "setCurrentIndex";
            const int index = int(rng.bounded(n + 2)) - 1;
            if (index != model.current && index < n)
                model.SetCurrent(index);
            bar.setCurrentIndex(index);
        } else if (roll < 62 && n > 0 && pickVisible() >= 0) {
            operation = "close click";
            const int index = pickVisible();
            hostAccepts = rng.bounded(10) != 0;
            model.frozen = true;
            model.frozenLast = index == n - 1;
            model.timerPending = false;
            QCursor::setPos(ButtonAt(&bar, index)->mapToGlobal(pointOn(index)));
            ClickClose(&bar, index);
            hostAccepts = true;
        } else if (roll < 70) {
            operation = "leave";
            const bool outside = rng.bounded(3) != 0;
            if (outside) {
                LeaveBar(&bar);
                if (model.frozen)
                    model.timerPending = true;
            } else {
                QCursor::setPos(bar.mapToGlobal(QPoint(2, 2)));
                SendEvent(&bar, QEvent::Leave);
            }
        } else if (roll < 76) {
            operation = "timer expiry";
            if (timer->isActive() != model.timerPending) {
                QTest::qFail(QStringLiteral("relayout timer %4 at step %1 (KELTAB_SEED=%2; before: %3)")
                                 .arg(report.step).arg(seed).arg(history.join(QStringLiteral(", ")))
                                 .arg(timer->isActive() ? QStringLiteral("running unexpectedly") : QStringLiteral("not running"))
                                 .toUtf8().constData(), __FILE__, __LINE__);
                return;
            }
            if (model.timerPending) {
                timer->start(0);
                while (timer->isActive())
                    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
                model.timerPending = false;
                model.FullFit();
            }
        } else if (roll < 86 && n > 0 && pickVisible() >= 0) {
            operation = "drag";
            const int index = pickVisible();
            const TabDataPtr dragged = model.tabs.at(index);
            model.SetCurrent(index);
            int held = index;
            {
                SlotDrag drag(&bar, index, pointOn(index));
                const int moves = int(rng.bounded(5));
                bool moved = false;
                for (int m = 0; m < moves; ++m) {
                    const int wanted = int(rng.bounded(model.barWidth + 200)) - 100;
                    drag.MoveLeftEdgeTo(wanted);
                    // The proxy takes no notice of motion to the press point itself until
                    // the pointer has left it once: then nothing moves.
                    if (!moved && wanted == drag.StartLeft())
                        continue;
                    moved = true;
                    // Tabs before firstIndex do not follow the pointer at all.
                    if (held < qMax(0, firstIndex))
                        continue;
                    const int target = model.DragTarget(held, model.HeldX(held, wanted), firstIndex);
                    if (target >= 0) {
                        model.tabs.move(held, target);
                        held = target;
                        model.current = held;
                    }
                    if (drag.Button()->x() != model.HeldX(held, wanted)) {
                        QTest::qFail(QStringLiteral("held tab at x %1, expected %2 (KELTAB_SEED=%3, step %4)")
                                         .arg(drag.Button()->x()).arg(model.HeldX(held, wanted)).arg(seed).arg(report.step)
                                         .toUtf8().constData(), __FILE__, __LINE__);
                        return;
                    }
                }
                drag.Release();
            }
            QCOMPARE(bar.GetIndexByTabData(dragged), held);
            // A drag released outside the bar has taken the pointer out of it: after
            // closing by mouse, that starts the re-fit like any other leave.
            const bool outside = !bar.rect().contains(bar.mapFromGlobal(QCursor::pos()));
            if (model.frozen && outside && timer->isActive())
                model.timerPending = true;
        } else if (roll < 92) {
            operation = "resize";
            const int width = S(150) + int(rng.bounded(S(1100)));
            if (width != model.barWidth) {
                model.barWidth = width;
                bar.resize(model.barWidth, bar.height());
                model.FullFit();
            }
        } else if (roll < 96 && n > 0 && pickVisible() >= 0) {
            operation = "menu";
            const int index = pickVisible();
            const int pick = int(rng.bounded(5)) - 1;
            // The user right-clicks the tab: the pointer is on it.
            QCursor::setPos(ButtonAt(&bar, index)->mapToGlobal(pointOn(index)));
            RunMenu(&bar, index, pick);
            // Closing the menu fits the tabs again. A re-fit that fell due while the
            // menu's event loop ran (200 ms after an earlier leave) has already
            // happened: its effect is the same fit.
            model.FullFit();
            if (model.timerPending && !timer->isActive())
                model.timerPending = false;
        } else if (n > 0) {
            operation = "hover";
            BrowserTabButton *button = ButtonAt(&bar, int(rng.bounded(n)));
            SendEvent(button, rng.bounded(2) ? QEvent::Enter : QEvent::Leave);
        }
        if (!check(operation))
            return;
        history.append(QLatin1String(operation));
        if (history.size() > 12)
            history.removeFirst();
        if (report.step % 64 == 0)
            FlushDeletes();
    }
    Q_UNUSED(menu)
}


KELTAB_TEST_MAIN(TstBrowserTabBarHostile)
#include "tst_browsertabbarhostile.moc"
