// BrowserTabBar (the classic strip) against QTabBar in one process: the shared
// tab-strip workload at 20 and 200 tabs, printed as `name ours qtabbar ratio`.
//
//   bench_browsertabbar [--styled]
//
// By default both bars have the platform style. With --styled both windows carry the
// library's default style sheet, as in a host that applies it: Qt's style-sheet style
// then serves every widget of both bars (QTabBar's close buttons included).

#include "browsertabbar.h"
#include "dpitool.h"
#include "keltabstyle.h"
#include "tabbarworkload.h"
#include "tabdata.h"

#include <QApplication>
#include <QTabBar>

#include <cstring>

namespace {

QString Title(int serial)
{
    return QStringLiteral("Page %1 - a site with a long title").arg(serial);
}

struct OursOps
{
    using Bar = BrowserTabBar;
    static Bar *Make(QWidget *window)
    {
        auto *bar = new Bar(window);
        bar->InitMenu();
        return bar;
    }
    static void AddTab(Bar *bar, int serial)
    {
        TabDataPtr tab(new TabData);
        tab->SetTabType(TabData::TabTypeWeb);
        tab->SetTitle(Title(serial));
        tab->SetData(QString::number(serial));
        bar->addTab(tab);
    }
    static void SetCurrent(Bar *bar, int index) { bar->setCurrentIndex(index); }
    static void Remove(Bar *bar, int index) { bar->removeTab(index); }
    static int Count(const Bar *bar) { return bar->count(); }
};

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
        return bar;
    }
    static void AddTab(Bar *bar, int serial) { bar->addTab(Title(serial)); }
    static void SetCurrent(Bar *bar, int index) { bar->setCurrentIndex(index); }
    static void Remove(Bar *bar, int index) { bar->removeTab(index); }
    static int Count(const Bar *bar) { return bar->count(); }
};

} // namespace

int main(int argc, char *argv[])
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
    for (int tabs : {20, 200}) {
        // A warm-up round each, so that the first figures do not carry one-time costs.
        TabBarWorkload::Run<OursOps>(20, kWidth, sheet);
        TabBarWorkload::Run<QTabBarOps>(20, kWidth, sheet);
        const TabBarWorkload::Figures ours = TabBarWorkload::Run<OursOps>(tabs, kWidth, sheet);
        const TabBarWorkload::Figures theirs = TabBarWorkload::Run<QTabBarOps>(tabs, kWidth, sheet);
        TabBarWorkload::PrintComparison(tabs, ours, theirs);
    }
    return 0;
}
