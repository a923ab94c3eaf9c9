#pragma once

// Workloads shared by the tab bar benchmarks. Each workload is a template on the bar
// type; a bar takes part by specialising TabBarWorkload::Driver, which says how to
// make the bar and how to add, select and remove a tab. Every workload runs in the
// same process for our bar and for Qt's QTabBar, so the ratio compares like with like.

#include <QApplication>
#include <QElapsedTimer>
#include <QTabBar>
#include <QTextStream>
#include <QVector>

#include <malloc.h>

#include <algorithm>
#include <memory>

namespace TabBarWorkload {

/**
 * How a workload drives one bar type. Specialise with:
 *   static std::unique_ptr<Bar> Make(int width);   // shown, laid out at width
 *   static void Add(Bar &bar, int serial);        // appends one tab
 *   static void SetCurrent(Bar &bar, int index);
 *   static void Remove(Bar &bar, int index);
 *   static int Count(const Bar &bar);
 */
template <typename Bar>
struct Driver;

/** Qt's own tab bar, closable and movable like a browser's. */
template <>
struct Driver<QTabBar>
{
    static std::unique_ptr<QTabBar> Make(int width)
    {
        auto bar = std::make_unique<QTabBar>();
        bar->setTabsClosable(true);
        bar->setMovable(true);
        bar->setExpanding(false);
        bar->setUsesScrollButtons(true);
        bar->resize(width, 36);
        bar->show();
        return bar;
    }
    static void Add(QTabBar &bar, int serial) { bar.addTab(QStringLiteral("Tab %1").arg(serial)); }
    static void SetCurrent(QTabBar &bar, int index) { bar.setCurrentIndex(index); }
    static void Remove(QTabBar &bar, int index) { bar.removeTab(index); }
    static int Count(const QTabBar &bar) { return bar.count(); }
};

/** Lets the bar handle what the operations queued (layout, paint, deferred deletes). */
inline void Settle()
{
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

constexpr int kWidth = 1200;
constexpr int kRounds = 5;

/** The best of kRounds runs of @p work, in microseconds; @p work gets a fresh bar each time. */
template <typename Bar, typename Prepare, typename Work>
double BestMicros(Prepare prepare, Work work)
{
    double best = 1e300;
    for (int round = 0; round < kRounds; ++round) {
        std::unique_ptr<Bar> bar = Driver<Bar>::Make(kWidth);
        prepare(*bar);
        Settle();
        QElapsedTimer timer;
        timer.start();
        work(*bar);
        Settle();
        best = std::min(best, timer.nsecsElapsed() / 1000.0);
    }
    return best;
}

template <typename Bar>
void Fill(Bar &bar, int tabs)
{
    for (int i = 0; i < tabs; ++i)
        Driver<Bar>::Add(bar, i);
}

/** Adds @p tabs tabs to an empty bar. */
template <typename Bar>
double AddTabs(int tabs)
{
    return BestMicros<Bar>([](Bar &) {}, [tabs](Bar &bar) { Fill(bar, tabs); });
}

/** Selects @p tabs tabs in turn, spread over the bar (a stride prime to the count). */
template <typename Bar>
double SwitchTabs(int tabs)
{
    return BestMicros<Bar>([tabs](Bar &bar) { Fill(bar, tabs); },
                           [tabs](Bar &bar) {
                               const int stride = tabs > 7 ? 7 : 1;
                               int index = 0;
                               for (int i = 0; i < tabs; ++i) {
                                   index = (index + stride) % tabs;
                                   Driver<Bar>::SetCurrent(bar, index);
                               }
                           });
}

/** Resizes a full bar 50 times, narrower and wider. */
template <typename Bar>
double Resizes(int tabs)
{
    return BestMicros<Bar>([tabs](Bar &bar) { Fill(bar, tabs); },
                           [](Bar &bar) {
                               for (int i = 0; i < 50; ++i) {
                                   bar.resize(kWidth - 400 + (i * 37) % 600, bar.height());
                                   QCoreApplication::processEvents();
                               }
                           });
}

/** Removes every tab, always the one in the middle. */
template <typename Bar>
double RemoveFromMiddle(int tabs)
{
    return BestMicros<Bar>([tabs](Bar &bar) { Fill(bar, tabs); },
                           [](Bar &bar) {
                               while (Driver<Bar>::Count(bar) > 0)
                                   Driver<Bar>::Remove(bar, Driver<Bar>::Count(bar) / 2);
                           });
}

/** Heap bytes per tab: the growth from an empty shown bar to one with @p tabs tabs, settled. */
template <typename Bar>
double BytesPerTab(int tabs)
{
    std::unique_ptr<Bar> bar = Driver<Bar>::Make(kWidth);
    Settle();
    const size_t before = mallinfo2().uordblks;
    Fill(*bar, tabs);
    Settle();
    const size_t after = mallinfo2().uordblks;
    return after > before ? double(after - before) / tabs : 0.0;
}

inline void Print(const QString &name, double ours, double theirs)
{
    QTextStream out(stdout);
    out.setRealNumberNotation(QTextStream::FixedNotation);
    out.setRealNumberPrecision(1);
    out << name << ' ' << ours << ' ' << theirs << ' ';
    out.setRealNumberPrecision(2);
    out << (theirs > 0 ? ours / theirs : 0.0) << '\n';
}

/** Runs every workload at each size for @p Ours against QTabBar and prints one line per figure. */
template <typename Ours>
void RunAll(const QString &prefix, const QVector<int> &sizes)
{
    for (int tabs : sizes) {
        const QString n = QString::number(tabs);
        Print(prefix + QStringLiteral("_add_") + n + QStringLiteral("_us"), AddTabs<Ours>(tabs), AddTabs<QTabBar>(tabs));
        Print(prefix + QStringLiteral("_switch_") + n + QStringLiteral("_us"), SwitchTabs<Ours>(tabs),
              SwitchTabs<QTabBar>(tabs));
        Print(prefix + QStringLiteral("_resize50_") + n + QStringLiteral("_us"), Resizes<Ours>(tabs), Resizes<QTabBar>(tabs));
        Print(prefix + QStringLiteral("_remove_middle_") + n + QStringLiteral("_us"), RemoveFromMiddle<Ours>(tabs),
              RemoveFromMiddle<QTabBar>(tabs));
        Print(prefix + QStringLiteral("_bytes_per_tab_") + n, BytesPerTab<Ours>(tabs), BytesPerTab<QTabBar>(tabs));
    }
}

} // namespace TabBarWorkload
