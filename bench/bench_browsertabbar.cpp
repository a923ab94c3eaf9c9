// SPDX-License-Identifier: MIT
// BrowserTabBar (the classic strip) against QTabBar in one process: the shared
// tab-strip workload at 20 and 200 tabs, printed as `name ours qtabbar ratio`.
//
//   bench_browsertabbar [--styled]
//
// By default both bars have the platform style. With --styled both windows carry the
// library's default style sheet, as in a host that applies it: Qt's style-sheet style
// then serves every widget of both bars (QTabBar's close buttons included).

#include "browsertabbar.h"
#include "tabbarworkload.h"
#include "tabdata.h"

namespace {

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
        tab->SetTitle(TabBarWorkload::Title(serial));
        tab->SetData(QString::number(serial));
        bar->addTab(tab);
    }
    static void SetCurrent(Bar *bar, int index) { bar->setCurrentIndex(index); }
    static void Remove(Bar *bar, int index) { bar->removeTab(index); }
    static int Count(const Bar *bar) { return bar->count(); }
};

} // namespace

int main(int argc, char *argv[])
{
    return TabBarWorkload::Main<OursOps, TabBarWorkload::QTabBarOps<false>>(argc, argv, {20, 200});
}
