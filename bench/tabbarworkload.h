// SPDX-License-Identifier: MIT
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
// and calls TabBarWorkload::Run<Ops>(tabs, width), or runs the whole comparison with
// QTabBar through TabBarWorkload::Main<Ops, QTabBarOps<...>>(). Every timed phase ends by letting
// the event loop run what the calls left for later (polish, layout, paint, deferred
// deletion), so deferred work is counted where it was caused.

#include "dpitool.h"
#include "keltabstyle.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTabBar>
#include <QWidget>

#include <malloc.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>
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

/** The title every benchmark gives tab number @p serial, long enough to be elided. */
inline QString Title(int serial)
{
    return QStringLiteral("Page %1 - a site with a long title").arg(serial);
}

/**
 * Qt's QTabBar set up as a browser strip (closable, movable, scroll buttons, elided
 * titles), the reference every tab-bar benchmark compares with. With @p HomeTab it
 * starts with one tab, to match a bar of ours that holds a fixed home tab.
 */
template <bool HomeTab>
struct QTabBarOps
{
    using Bar = QTabBar;
    static Bar *Make(QWidget *window)
    {
        auto *bar = new QTabBar(window);
        bar->setTabsClosable(true);
        bar->setMovable(true);
        bar->setUsesScrollButtons(true);
        bar->setExpanding(false);
        bar->setElideMode(Qt::ElideRight);
        if (HomeTab)
            bar->addTab(QStringLiteral("Home"));
        return bar;
    }
    static void AddTab(Bar *bar, int serial) { bar->addTab(Title(serial)); }
    static void SetCurrent(Bar *bar, int index) { bar->setCurrentIndex(index); }
    static void Remove(Bar *bar, int index) { bar->removeTab(index); }
    static int Count(const Bar *bar) { return bar->count(); }
};

/**
 * The whole benchmark program: headless unless a platform is set, scale factor 1.0,
 * and for each count in @p tabCounts one warm-up round per bar and then the figures,
 * printed as `name ours qtabbar ratio`. With --styled both windows carry the library's
 * default style sheet, as in a host that applies it.
 */
template <typename Ours, typename Theirs>
int Main(int argc, char *argv[], std::initializer_list<int> tabCounts)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    QApplication app(argc, argv);
    DpiTool::SetScaleFactor(1.0);

    bool styled = false;
    for (int i = 1; i < argc; ++i)
        styled = styled || std::strcmp(argv[i], "--styled") == 0;
    const QString sheet = styled ? KelTabStyle::DefaultStyleSheet() : QString();
    constexpr int kWidth = 1200;

    std::printf("# name ours qtabbar ratio (times in ms, memory in bytes per tab; %s)\n",
                styled ? "both windows with the default style sheet" : "no style sheet");
    for (int tabs : tabCounts) {
        // A warm-up round each, so that the first figures do not carry one-time costs.
        Run<Ours>(20, kWidth, sheet);
        Run<Theirs>(20, kWidth, sheet);
        const Figures ours = Run<Ours>(tabs, kWidth, sheet);
        const Figures theirs = Run<Theirs>(tabs, kWidth, sheet);
        PrintComparison(tabs, ours, theirs);
    }
    return 0;
}

} // namespace TabBarWorkload
