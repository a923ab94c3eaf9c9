// SPDX-License-Identifier: MIT
// The smallest host of the library: a window with one tab strip and a page per tab.
//
//   minimal              the scrolling strip (BrowserTabBarEx)
//   minimal --classic    the classic strip with its new-tab button (BrowserTabBar)
//
// Both strips are driven through BrowserTabBarBase, so the rest of the host does not
// care which one it got.

#include <KelTabContainer/browsertabbar.h>
#include <KelTabContainer/browsertabbarex.h>
#include <KelTabContainer/keltabstyle.h>

#include <QApplication>
#include <QHash>
#include <QLabel>
#include <QShortcut>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    KelTabStyle::ApplyDefaultStyleSheet(); // the library's look
    const bool classic = app.arguments().contains(QStringLiteral("--classic"));

    QWidget window;
    window.resize(900, 600);
    auto *bar = classic ? static_cast<BrowserTabBarBase *>(new BrowserTabBar)
                        : static_cast<BrowserTabBarBase *>(new BrowserTabBarEx);
    bar->InitMenu(); // the tabs' context menu
    auto *pages = new QStackedWidget;
    QHash<QString, QWidget *> pageOf; // tab id -> page; tabs may be dragged into any order

    auto *top = new QHBoxLayout;
    top->addWidget(bar, 1);
    if (!classic) { // the classic strip has a new-tab button of its own
        auto *plus = new QToolButton;
        plus->setText(QStringLiteral("+"));
        QObject::connect(plus, &QToolButton::clicked, bar, &BrowserTabBarBase::SigAddNewTab);
        top->addWidget(plus);
    }
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    layout->addWidget(pages, 1);

    int opened = 0;
    const auto openTab = [&] {
        TabDataPtr tab(new TabData);
        tab->SetTabType(TabData::TabTypeWeb);
        tab->SetTitle(QStringLiteral("Page %1").arg(++opened));
        auto *page = new QLabel(tab->GetTitle());
        page->setAlignment(Qt::AlignCenter);
        pageOf.insert(tab->GetId(), page);
        pages->addWidget(page);
        bar->setCurrentIndex(bar->addTab(tab));
    };

    QObject::connect(bar, &BrowserTabBarBase::SigAddNewTab, bar, openTab);
    QObject::connect(bar, &BrowserTabBarBase::currentChanged, pages, [&](int index) {
        if (const TabDataPtr tab = bar->GetTabData(index))
            pages->setCurrentWidget(pageOf.value(tab->GetId()));
    });
    QObject::connect(bar, &BrowserTabBarBase::tabCloseRequested, bar, [&](int index) {
        const TabDataPtr tab = bar->GetTabData(index);
        if (!tab)
            return;
        bar->removeTab(index); // the bar picks the next current tab and says so
        delete pageOf.take(tab->GetId());
        if (bar->count() == 0)
            openTab(); // a browser window keeps at least one tab
    });
    auto *newTabKey = new QShortcut(QKeySequence::AddTab, &window);
    QObject::connect(newTabKey, &QShortcut::activated, bar, openTab);

    for (int i = 0; i < 3; ++i)
        openTab();
    window.show();
    return app.exec();
}
