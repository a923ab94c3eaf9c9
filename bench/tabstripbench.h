// SPDX-License-Identifier: MIT
#pragma once

// The per-operation workload of bench_tabstrips: one strip at a time, shown in a window
// of its own, filled to a number of tabs, then timed one operation at a time at that
// size. Every timed operation ends by letting the event loop run what it left for
// later (polish, layout, paint, deferred deletion), so deferred work is counted where
// it was caused; what restores the size afterwards is not timed.

#include <QApplication>
#include <QElapsedTimer>
#include <QString>
#include <QThread>
#include <QWidget>

#include <malloc.h>

#include <memory>

namespace TabStripBench {

/** One tab strip under test, driven through what a host calls. */
class Strip
{
public:
    virtual ~Strip() = default;
    virtual QWidget *Widget() = 0;
    virtual void Add(int serial) = 0;
    virtual void Insert(int index, int serial) = 0;
    virtual void SetCurrent(int index) = 0;
    virtual void Remove(int index) = 0;
    virtual void Move(int from, int to) = 0;
    virtual int Count() const = 0;
    /** Starts a scroll animation towards @p index; false when the strip has none. */
    virtual bool ScrollTowards(int index)
    {
        Q_UNUSED(index)
        return false;
    }
};

/** The operations, in the order of the printed table. */
enum Operation { Add, Insert, SetCurrent, Remove, Move, Resize, Repaint, Tick, OperationCount };

inline const char *OperationName(int operation)
{
    static const char *const names[]
        = {"add", "insert", "set_current", "remove", "move", "resize", "repaint", "scroll_tick"};
    return names[operation];
}

struct Figures
{
    double msPerOp[OperationCount] = {};  // 0 where the strip has no such operation
    double bytesPerTab = 0;               // heap growth while filling, per tab
    double fillMs = 0;                    // the whole fill, for the time budget
};

inline void Settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
}

inline double Ms(const QElapsedTimer &timer)
{
    return timer.nsecsElapsed() / 1.0e6;
}

/** The title of tab number @p serial, long enough to be elided. */
inline QString Title(int serial)
{
    return QStringLiteral("Page %1 - a site with a long title").arg(serial);
}

constexpr int kWidth = 1200;

/** What Measure() times: 60 rounds of every operation unless a profile asks for less. */
struct Plan
{
    int rounds = 60;
    unsigned operations = ~0u;  // a bit per Operation
    bool Times(Operation op) const { return operations & (1u << op); }
};
inline Plan plan;

/**
 * Fills a new strip from @p make to @p tabs tabs, then times plan.rounds of each operation.
 * The strip's window carries @p styleSheet.
 */
template <typename Make>
Figures Measure(Make make, int tabs, const QString &styleSheet)
{
    Figures f;
    auto window = std::make_unique<QWidget>();
    if (!styleSheet.isEmpty())
        window->setStyleSheet(styleSheet);
    std::unique_ptr<Strip> strip(make(window.get()));
    QWidget *bar = strip->Widget();
    const int height = qMax(bar->sizeHint().height(), bar->height());
    bar->setGeometry(0, 0, kWidth, height);
    window->resize(kWidth, height);
    window->show();
    Settle();

    const size_t heapBefore = mallinfo2().uordblks;
    QElapsedTimer timer;
    timer.start();
    int serial = 0;
    while (strip->Count() < tabs)
        strip->Add(serial++);
    Settle();
    f.fillMs = Ms(timer);
    f.bytesPerTab = (double(mallinfo2().uordblks) - double(heapBefore)) / tabs;

    auto timed = [&](Operation op, auto &&step, auto &&restore) {
        if (!plan.Times(op))
            return;
        double total = 0;
        for (int round = 0; round < plan.rounds; ++round) {
            timer.restart();
            step(round);
            Settle();
            total += Ms(timer);
            restore(round);
            Settle();
        }
        f.msPerOp[op] = total / plan.rounds;
    };
    auto nothing = [](int) {};
    // Indexes spread over the strip, the same for every strip.
    auto spread = [&](int round, int salt) { return int((qint64(round) * 7919 + salt) % strip->Count()); };

    timed(Add, [&](int) { strip->Add(serial++); }, [&](int) { strip->Remove(strip->Count() - 1); });
    timed(Insert, [&](int) { strip->Insert(strip->Count() / 2, serial++); },
          [&](int) { strip->Remove(strip->Count() / 2); });
    timed(SetCurrent, [&](int round) { strip->SetCurrent(spread(round, 13)); }, nothing);
    timed(Remove, [&](int) { strip->Remove(strip->Count() / 2); },
          [&](int) { strip->Insert(strip->Count() / 2, serial++); });
    timed(Move, [&](int round) { strip->Move(spread(round, 5), spread(round, 101)); }, nothing);
    timed(Resize, [&](int round) { bar->resize(kWidth - (round % 2 + 1) * 48, height); },
          [&](int) { bar->resize(kWidth, height); });
    // One paint of the strip as it stands, nothing else: what every change that moves
    // the tabs in view (a resize, a scroll tick) pays at the least.
    timed(Repaint, [&](int) { bar->repaint(); }, nothing);

    // A scroll animation: the time the event loop spends on each of its ticks.
    if (plan.Times(Tick) && strip->ScrollTowards(0)) {
        Settle();
        double total = 0;
        int ticks = 0;
        for (int round = 0; round < qMax(plan.rounds / 6, 1); ++round) {
            strip->ScrollTowards(round % 2 ? 0 : strip->Count() - 1);
            for (int tick = 0; tick < 6; ++tick) {
                QThread::msleep(21);
                timer.restart();
                QApplication::processEvents();
                total += Ms(timer);
                ++ticks;
            }
        }
        f.msPerOp[Tick] = total / ticks;
    }

    strip.reset();
    window.reset();
    Settle();
    return f;
}

} // namespace TabStripBench
