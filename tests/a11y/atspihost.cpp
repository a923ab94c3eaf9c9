// SPDX-License-Identifier: MIT
// The window that atspiclient.py reads over AT-SPI: the classic strip, the scrolling
// strip and, as a control, Qt's own QTabBar, one above the other, each holding the
// same tabs with the second one current. Closing a tab of our strips (its close
// button, pressed through the accessibility action) removes it, as a host would.
//
// Runs until it is killed; the runner script starts it and ends it.

#include "browsertabbar.h"
#include "browsertabbarbase.h"
#include "browsertabbarex.h"
#include "dpitool.h"
#include "tabdata.h"

#include <QApplication>
#include <QTabBar>
#include <QVBoxLayout>
#include <QWidget>

namespace {

// The titles every strip holds; the empty one is read as "New tab" on our strips.
const QStringList &Titles()
{
    static const QStringList titles{QStringLiteral("Alpha"), QStringLiteral("Beta"), QStringLiteral("Gamma"),
                                    QString()};
    return titles;
}

void Fill(BrowserTabBarBase *bar)
{
    for (const QString &title : Titles()) {
        TabDataPtr tab(new TabData);
        tab->SetTabType(TabData::TabTypeWeb);
        tab->SetTitle(title);
        tab->SetData(tab->GetId());
        bar->addTab(tab);
    }
    bar->setCurrentIndex(1);
    QObject::connect(bar, &BrowserTabBarBase::tabCloseRequested, bar, [bar](int index) { bar->removeTab(index); });
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    // The client finds the host among the bus's applications by this name.
    QApplication::setApplicationName(QStringLiteral("keltab-atspihost"));
    DpiTool::SetScaleFactor(1.0);

    QWidget window;
    window.setWindowTitle(QStringLiteral("KelTabContainer AT-SPI host"));
    auto *layout = new QVBoxLayout(&window);

    // Wide enough that every tab is in view and none is cut.
    auto *classic = new BrowserTabBar;
    classic->setAccessibleName(QStringLiteral("classic"));
    classic->setMinimumSize(900, 40);
    Fill(classic);
    layout->addWidget(classic);

    auto *scrolling = new BrowserTabBarEx;
    scrolling->setAccessibleName(QStringLiteral("scrolling"));
    scrolling->setMinimumSize(900, 40);
    Fill(scrolling);
    layout->addWidget(scrolling);

    auto *control = new QTabBar;
    control->setAccessibleName(QStringLiteral("qtabbar"));
    for (const QString &title : Titles())
        control->addTab(title);
    control->setCurrentIndex(1);
    layout->addWidget(control);

    window.show();
    return app.exec();
}
