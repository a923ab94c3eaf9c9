// The classic tab bar against Qt's QTabBar: `name ours qtabbar ratio` per line.
// Both bars run offscreen under the library's default style sheet, as a host shows
// them (KELTAB_BENCH_PLAIN=1: without it). Figures are the best of five runs.

#include "browsertabbar.h"
#include "keltabstyle.h"
#include "tabbarworkload.h"

namespace TabBarWorkload {

template <>
struct Driver<BrowserTabBar>
{
    static std::unique_ptr<BrowserTabBar> Make(int width)
    {
        auto bar = std::make_unique<BrowserTabBar>();
        bar->InitMenu();
        bar->resize(width, bar->minimumHeight());
        bar->show();
        return bar;
    }
    static void Add(BrowserTabBar &bar, int serial)
    {
        TabDataPtr tab(new TabData);
        tab->SetTabType(TabData::TabTypeWeb);
        tab->SetTitle(QStringLiteral("Tab %1").arg(serial));
        bar.addTab(tab);
    }
    static void SetCurrent(BrowserTabBar &bar, int index) { bar.setCurrentIndex(index); }
    static void Remove(BrowserTabBar &bar, int index) { bar.removeTab(index); }
    static int Count(const BrowserTabBar &bar) { return bar.count(); }
};

} // namespace TabBarWorkload

int main(int argc, char *argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication::setAttribute(Qt::AA_Use96Dpi, true);
    QApplication app(argc, argv);
    // KELTAB_BENCH_PLAIN=1 measures both bars without any style sheet.
    if (!qEnvironmentVariableIsSet("KELTAB_BENCH_PLAIN"))
        KelTabStyle::ApplyDefaultStyleSheet();
    TabBarWorkload::RunAll<BrowserTabBar>(QStringLiteral("classic"), {20, 200});
    return 0;
}
