// SPDX-License-Identifier: MIT
// BrowserTabBarEx against QTabBar in one process: the shared tab-strip workload at
// 100 and 1000 tabs, printed as `name ours qtabbar ratio`.
//
//   bench_browsertabbarex [--styled]
//
// By default both bars have the platform style. With --styled both windows carry the
// library's default style sheet, as in a host that applies it: Qt's style-sheet style
// then serves every widget of both bars (QTabBar's close buttons included).

#include "browsertabbarex.h"
#include "tabbarworkload.h"
#include "tabdata.h"

namespace {

class BenchTabBarEx : public BrowserTabBarEx
{
public:
    using BrowserTabBarEx::BrowserTabBarEx;

protected:
    int FixedTabCount() override { return 1; }
    int FixedTabTotalWidth() override { return ButtonHomepageWidth(); }
};

TabDataPtr MakeTab(TabData::TabType type, const QString &title, int serial)
{
    TabDataPtr tab(new TabData);
    tab->SetTabType(type);
    tab->SetTitle(title);
    tab->SetData(QString::number(serial));
    return tab;
}

struct OursOps
{
    using Bar = BenchTabBarEx;
    static Bar *Make(QWidget *window)
    {
        auto *bar = new Bar(window);
        bar->addTab(MakeTab(TabData::TabTypeHomePage, QStringLiteral("Home"), -1));
        return bar;
    }
    static void AddTab(Bar *bar, int serial) { bar->addTab(MakeTab(TabData::TabTypeWeb, TabBarWorkload::Title(serial), serial)); }
    static void SetCurrent(Bar *bar, int index) { bar->setCurrentIndex(index); }
    static void Remove(Bar *bar, int index) { bar->removeTab(index); }
    static int Count(const Bar *bar) { return bar->count(); }
};

} // namespace

int main(int argc, char *argv[])
{
    return TabBarWorkload::Main<OursOps, TabBarWorkload::QTabBarOps<true>>(argc, argv, {100, 1000});
}
