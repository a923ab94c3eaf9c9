#pragma once

// A tab-strip workload shared by the benchmarks of both bars: one bar type at a time,
// shown in a window of its own, timed phase by phase, with the heap growth per tab.
//
// A benchmark supplies, for each bar type, a small operations type:
//
//   struct Ops {
//       using Bar = ...;
//       static Bar *Make(QWidget *window);       // a bar, child of window, fixed tabs added
//       static void AddTab(Bar *bar, int serial);
//       static void SetCurrent(Bar *bar, int index);
//       static void Remove(Bar *bar, int index);
//       static int Count(const Bar *bar);
//   };
//
// and calls TabBarWorkload::Run<Ops>(tabs, width). Every timed phase ends by letting
// the event loop run what the calls left for later (polish, layout, paint, deferred
// deletion), so deferred work is counted where it was caused.

#include <QApplication>
#include <QElapsedTimer>
#include <QWidget>

#include <malloc.h>

#include <cstdio>
#include <memory>

namespace TabBarWorkload {

struct Figures
{
    double addMs = 0;        // add every tab
    double currentMs = 0;    // 1000 setCurrentIndex over spread indexes
    double resizeMs = 0;     // 50 resizes
    double removeMs = 0;     // remove every tab from the middle
    double bytesPerTab = 0;  // heap growth while adding, per tab
};

inline void Settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QApplication::processEvents();
}

inline size_t HeapInUse()
{
    return mallinfo2().uordblks;
}

inline double Milliseconds(const QElapsedTimer &timer)
{
    return timer.nsecsElapsed() / 1.0e6;
}

constexpr int kCurrentChanges = 1000;
constexpr int kResizes = 50;

template <typename Ops>
Figures Run(int tabs, int width, const QString &styleSheet = QString())
{
    Figures figures;
    auto window = std::make_unique<QWidget>();
    if (!styleSheet.isEmpty())
        window->setStyleSheet(styleSheet);
    typename Ops::Bar *bar = Ops::Make(window.get());
    const int height = bar->height();
    bar->setGeometry(0, 0, width, height);
    window->resize(width, height);
    window->show();
    Settle();

    const size_t heapBefore = HeapInUse();
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < tabs; ++i)
        Ops::AddTab(bar, i);
    Settle();
    figures.addMs = Milliseconds(timer);
    figures.bytesPerTab = (double(HeapInUse()) - double(heapBefore)) / tabs;

    timer.restart();
    const int count = Ops::Count(bar);
    for (int i = 0; i < kCurrentChanges; ++i)
        Ops::SetCurrent(bar, int((qint64(i) * 7919 + 13) % count));
    Settle();
    figures.currentMs = Milliseconds(timer);

    timer.restart();
    for (int i = 0; i < kResizes; ++i) {
        const int w = width - (i % 10) * (width / 25);
        bar->resize(w, height);
    }
    bar->resize(width, height);
    Settle();
    figures.resizeMs = Milliseconds(timer);

    timer.restart();
    while (Ops::Count(bar) > 0)
        Ops::Remove(bar, Ops::Count(bar) / 2);
    Settle();
    figures.removeMs = Milliseconds(timer);

    window.reset();
    Settle();
    return figures;
}

inline void Print(const char *phase, int tabs, const char *unit, double ours, double theirs)
{
    std::printf("%s_%d%s %.2f %.2f %.3f\n", phase, tabs, unit, ours, theirs, theirs > 0 ? ours / theirs : 0.0);
    std::fflush(stdout);
}

/** Prints one line per figure, named after the phase and the number of tabs. */
inline void PrintComparison(int tabs, const Figures &ours, const Figures &theirs)
{
    Print("add", tabs, "_ms", ours.addMs, theirs.addMs);
    Print("set_current", tabs, "_ms", ours.currentMs, theirs.currentMs);
    Print("resize", tabs, "_ms", ours.resizeMs, theirs.resizeMs);
    Print("remove_middle", tabs, "_ms", ours.removeMs, theirs.removeMs);
    Print("bytes_per_tab", tabs, "", ours.bytesPerTab, theirs.bytesPerTab);
}

} // namespace TabBarWorkload
