// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "itabmanager.h"
#include "tabcontainer.h"

#include <QWidget>

namespace {

class Page : public TabContainer
{
public:
    QWidget *GetWidget() override { return nullptr; }
    void OnActivated() override {}
    void OnDeactivated() override {}
};

// The smallest real manager a host writes: pages kept by tab record.
class Manager : public ITabManager
{
public:
    QList<QPair<TabDataPtr, Page *>> pages;
    int current = -1;

    TabContainer *GetTabContainer(TabDataPtr tab) override
    {
        for (const auto &entry : qAsConst(pages))
            if (entry.first->IsEqual(tab))
                return entry.second;
        return nullptr;
    }
    int OpenTab(TabDataPtr tab, bool activate) override
    {
        for (int i = 0; i < pages.size(); ++i) {
            if (pages.at(i).first->IsEqual(tab)) {
                if (activate)
                    current = i;
                return i;
            }
        }
        pages.append({tab, nullptr});
        if (activate)
            current = pages.size() - 1;
        return pages.size() - 1;
    }
    bool CloseTab(TabDataPtr tab) override
    {
        for (int i = 0; i < pages.size(); ++i) {
            if (pages.at(i).first->IsEqual(tab)) {
                pages.removeAt(i);
                return true;
            }
        }
        return false;
    }
    TabContainer *GetCurrentTabContainer() override
    {
        return current >= 0 && current < pages.size() ? pages.at(current).second : nullptr;
    }
};

} // namespace

class TstITabManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostImplementsTheFourOperations();
    void copyAndAssignmentAreAvailable();
    void deletedThroughTheInterface();
};

void TstITabManager::hostImplementsTheFourOperations()
{
    Manager manager;
    ITabManager *iface = &manager;
    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypePlugin);
    tab->SetData(QStringLiteral("notes"));
    QCOMPARE(iface->OpenTab(tab, true), 0);
    Page page;
    manager.pages[0].second = &page;

    // A second record of the same plug-in is the same tab.
    TabDataPtr same(new TabData);
    same->SetTabType(TabData::TabTypePlugin);
    same->SetData(QStringLiteral("notes"));
    QCOMPARE(iface->OpenTab(same, false), 0);
    QCOMPARE(iface->GetTabContainer(same), &page);
    QCOMPARE(iface->GetCurrentTabContainer(), &page);
    QVERIFY(iface->CloseTab(tab));
    QVERIFY(!iface->CloseTab(tab));
    QVERIFY(!iface->GetTabContainer(tab));
}

void TstITabManager::copyAndAssignmentAreAvailable()
{
    Manager a;
    a.OpenTab(TabDataPtr(new TabData), true);
    Manager b(a);
    QCOMPARE(b.pages.size(), 1);
    Manager c;
    c = a;
    QCOMPARE(c.current, 0);
}

void TstITabManager::deletedThroughTheInterface()
{
    struct Counting : Manager {
        bool *destroyed;
        explicit Counting(bool *flag) : destroyed(flag) {}
        ~Counting() override { *destroyed = true; }
    };
    bool destroyed = false;
    ITabManager *manager = new Counting(&destroyed);
    delete manager;
    QVERIFY(destroyed);
}

KELTAB_TEST_MAIN(TstITabManager)
#include "tst_itabmanager.moc"
