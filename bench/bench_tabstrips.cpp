// SPDX-License-Identifier: MIT
// Both tab strips and Qt's QTabBar side by side in one process: the cost of one
// operation at 20, 200, 1,000 and 10,000 tabs, and the memory per tab.
//
//   bench_tabstrips [--plain] [--chart FILE.png] [--counts 20,200,...] [--only scrolling|classic|qtabbar]
//                   [--budget SECONDS] [--ops add,insert,...] [--rounds N] [--rtl]
//
// By default every window carries the library's default style sheet, as in a host
// that applies it (Qt's style-sheet style then serves QTabBar as well); --plain runs
// without. Prints a Markdown table (milliseconds per operation, ratios to QTabBar) and
// with --chart draws it. A strip is not run at a count where its time, projected from
// the count before, would pass a minute (QTabBar at 10,000 tabs); --budget sets another
// limit. --ops and --rounds narrow the run down for a profiler. --rtl lays every
// window out right to left, as for Arabic or Hebrew.

#include "browsertabbar.h"
#include "browsertabbarex.h"
#include "dpitool.h"
#include "keltabstyle.h"
#include "tabdata.h"
#include "tabstripbench.h"
#include "tabstripchart.h"

#include <QApplication>
#include <QTabBar>

#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace TabStripBench;

namespace {

TabDataPtr WebTab(int serial)
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypeWeb);
    tab->SetTitle(Title(serial));
    tab->SetData(QString::number(serial));
    return tab;
}

// A host's scrolling strip with one fixed home tab.
class HostTabBarEx : public BrowserTabBarEx
{
public:
    using BrowserTabBarEx::BrowserTabBarEx;

protected:
    int FixedTabCount() override { return 1; }
    int FixedTabTotalWidth() override { return ButtonHomepageWidth(); }
};

// Our strips through the base class both share.
class OurStrip : public Strip
{
public:
    explicit OurStrip(BrowserTabBarBase *bar) : m_bar(bar) { m_bar->InitMenu(); }
    QWidget *Widget() override { return m_bar; }
    void Add(int serial) override { m_bar->addTab(WebTab(serial)); }
    void Insert(int index, int serial) override { m_bar->insertTab(index, WebTab(serial)); }
    void SetCurrent(int index) override { m_bar->setCurrentIndex(index); }
    void Remove(int index) override { m_bar->removeTab(index); }
    void Move(int from, int to) override { m_bar->moveTab(from, to); }
    int Count() const override { return m_bar->count(); }

protected:
    BrowserTabBarBase *m_bar;
};

class ScrollingStrip : public OurStrip
{
public:
    explicit ScrollingStrip(QWidget *window) : OurStrip(new HostTabBarEx(window))
    {
        TabDataPtr home(new TabData);
        home->SetTabType(TabData::TabTypeHomePage);
        home->SetTitle(QStringLiteral("Home"));
        m_bar->addTab(home);
    }
    bool ScrollTowards(int index) override
    {
        // The arrows show only while the tabs overflow the strip: without them there is
        // nothing to scroll, and the ticks would time an idle event loop.
        const auto *arrow = m_bar->findChild<QWidget *>(QStringLiteral("TabButtonRightArrowEx"));
        if (!arrow || !arrow->isVisible())
            return false;
        static_cast<BrowserTabBarEx *>(m_bar)->showIndex(index);
        return true;
    }
};

class ClassicStrip : public OurStrip
{
public:
    explicit ClassicStrip(QWidget *window) : OurStrip(new BrowserTabBar(window)) {}
};

// QTabBar set up as a browser strip: closable, movable, scroll buttons, elided titles.
class QtStrip : public Strip
{
public:
    explicit QtStrip(QWidget *window) : m_bar(new QTabBar(window))
    {
        m_bar->setTabsClosable(true);
        m_bar->setMovable(true);
        m_bar->setUsesScrollButtons(true);
        m_bar->setExpanding(false);
        m_bar->setElideMode(Qt::ElideRight);
    }
    QWidget *Widget() override { return m_bar; }
    void Add(int serial) override { m_bar->addTab(Title(serial)); }
    void Insert(int index, int serial) override { m_bar->insertTab(index, Title(serial)); }
    void SetCurrent(int index) override { m_bar->setCurrentIndex(index); }
    void Remove(int index) override { m_bar->removeTab(index); }
    void Move(int from, int to) override { m_bar->moveTab(from, to); }
    int Count() const override { return m_bar->count(); }

private:
    QTabBar *m_bar;
};

QVector<int> ParseCounts(const char *text)
{
    QVector<int> counts;
    const QStringList parts = QString::fromLatin1(text).split(QLatin1Char(','));
    for (const QString &part : parts) {
        bool ok = false;
        const int n = part.toInt(&ok);
        if (ok && n > 0)
            counts << n;
    }
    return counts;
}

unsigned ParseOperations(const char *text)
{
    unsigned operations = 0;
    const QStringList names = QString::fromLatin1(text).split(QLatin1Char(','));
    for (int op = 0; op < OperationCount; ++op) {
        if (names.contains(QLatin1String(OperationName(op))))
            operations |= 1u << op;
    }
    return operations;
}

QString Cell(double ms)
{
    if (ms <= 0)
        return QStringLiteral("–");
    return QString::number(ms, 'f', ms < 1 ? 3 : 2);
}

QString Ratio(double ours, double theirs)
{
    return ours > 0 && theirs > 0 ? QString::number(ours / theirs, 'f', 2) : QStringLiteral("–");
}

} // namespace

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    QApplication app(argc, argv);
    DpiTool::SetScaleFactor(1.0);

    bool styled = true;
    bool rtl = false;
    QString chart;
    QVector<int> counts{20, 200, 1000, 10000};
    QString only;
    double budgetMs = 60000;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--plain") == 0)
            styled = false;
        else if (std::strcmp(argv[i], "--rtl") == 0)
            rtl = true;
        else if (std::strcmp(argv[i], "--chart") == 0 && i + 1 < argc)
            chart = QString::fromLocal8Bit(argv[++i]);
        else if (std::strcmp(argv[i], "--counts") == 0 && i + 1 < argc)
            counts = ParseCounts(argv[++i]);
        else if (std::strcmp(argv[i], "--only") == 0 && i + 1 < argc)
            only = QString::fromLatin1(argv[++i]);
        else if (std::strcmp(argv[i], "--budget") == 0 && i + 1 < argc)
            budgetMs = std::atof(argv[++i]) * 1000;
        else if (std::strcmp(argv[i], "--rounds") == 0 && i + 1 < argc)
            plan.rounds = qMax(std::atoi(argv[++i]), 1);
        else if (std::strcmp(argv[i], "--ops") == 0 && i + 1 < argc)
            plan.operations = ParseOperations(argv[++i]);
    }
    if (counts.isEmpty()) {
        std::fprintf(stderr, "--counts wants a list such as 20,200\n");
        return 2;
    }
    const QString sheet = styled ? KelTabStyle::DefaultStyleSheet() : QString();
    if (rtl)
        QApplication::setLayoutDirection(Qt::RightToLeft);

    QVector<Series> series{{QStringLiteral("BrowserTabBarEx (scrolling)"), QColor(31, 119, 180), {}, {}},
                           {QStringLiteral("BrowserTabBar (classic)"), QColor(255, 127, 14), {}, {}},
                           {QStringLiteral("QTabBar"), QColor(110, 110, 110), {}, {}}};
    auto make = [](int which, QWidget *window) -> Strip * {
        switch (which) {
        case 0:
            return new ScrollingStrip(window);
        case 1:
            return new ClassicStrip(window);
        default:
            return new QtStrip(window);
        }
    };
    // A warm-up round each, so that the first figures do not carry one-time costs.
    for (int which = 0; which < series.size(); ++which)
        Measure([&](QWidget *w) { return make(which, w); }, 20, sheet);

    const QStringList keys{QStringLiteral("scrolling"), QStringLiteral("classic"), QStringLiteral("qtabbar")};
    for (int which = 0; which < series.size(); ++which) {
        if (!only.isEmpty() && keys.at(which) != only)
            continue;
        double lastMs = 0;
        int lastCount = 0;
        for (int tabs : qAsConst(counts)) {
            if (lastCount > 0 && lastMs * tabs / lastCount > budgetMs) {
                std::fprintf(stderr, "%s: %d tabs skipped (over %.0f s)\n", qPrintable(series[which].name), tabs,
                             budgetMs / 1000);
                break;
            }
            QElapsedTimer took;
            took.start();
            const Figures f = Measure([&](QWidget *w) { return make(which, w); }, tabs, sheet);
            lastMs = Ms(took);
            lastCount = tabs;
            series[which].tabs << tabs;
            series[which].figures << f;
            std::fprintf(stderr, "%s: %d tabs in %.1f s\n", qPrintable(series[which].name), tabs, lastMs / 1000);
        }
    }

    auto at = [&](int which, int tabs) -> const Figures * {
        const int i = series[which].tabs.indexOf(tabs);
        return i < 0 ? nullptr : &series[which].figures[i];
    };
    std::printf("Milliseconds per operation (memory: KiB per tab), %s%s; ratios to QTabBar.\n\n",
                styled ? "every window with the library's default style sheet" : "no style sheet",
                rtl ? ", right to left" : "");
    std::printf("| operation | tabs | scrolling | classic | QTabBar | scrolling / QTabBar | classic / QTabBar |\n");
    std::printf("| --- | ---: | ---: | ---: | ---: | ---: | ---: |\n");
    for (int op = 0; op <= OperationCount; ++op) {
        for (int tabs : qAsConst(counts)) {
            double v[3] = {};
            for (int which = 0; which < 3; ++which) {
                if (const Figures *f = at(which, tabs))
                    v[which] = op == OperationCount ? f->bytesPerTab / 1024.0 : f->msPerOp[op];
            }
            std::printf("| %s | %d | %s | %s | %s | %s | %s |\n",
                        op == OperationCount ? "memory" : OperationName(op), tabs, qPrintable(Cell(v[0])),
                        qPrintable(Cell(v[1])), qPrintable(Cell(v[2])), qPrintable(Ratio(v[0], v[2])),
                        qPrintable(Ratio(v[1], v[2])));
        }
    }
    std::fflush(stdout);
    if (!chart.isEmpty() && !DrawChart(series, counts, chart)) {
        std::fprintf(stderr, "Cannot write %s\n", qPrintable(chart));
        return 1;
    }
    return 0;
}
