// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "tablookup_p.h"

#include <memory>
#include <vector>

namespace {

// The lookups only need GetTabData() from a bar's buttons.
class FakeButton
{
public:
    explicit FakeButton(TabDataPtr tab)
        : m_tab(std::move(tab))
    {
    }
    TabDataPtr GetTabData() const { return m_tab; }

private:
    TabDataPtr m_tab;
};

TabDataPtr MakeTab(const QString &id, const QString &title, TabData::TabType type = TabData::TabTypeWeb,
                   const QString &data = QString())
{
    auto tab = TabDataPtr::create();
    tab->SetId(id);
    tab->SetTitle(title);
    tab->SetTabType(type);
    tab->SetData(data);
    return tab;
}

} // namespace

class TstTabLookup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tabAt_data();
    void tabAt();
    void indexOfTab();
    void indexOfTabNullOrMissing();
    void indexOfTitle_data();
    void indexOfTitle();
    void indexOfId_data();
    void indexOfId();
    void skipsButtonsWithoutRecord();
    void emptyList();
    void allTitles();

private:
    std::vector<std::unique_ptr<FakeButton>> m_owned;
    QList<FakeButton *> m_buttons;
};

void TstTabLookup::init()
{
    const QList<TabDataPtr> tabs{
        MakeTab(QStringLiteral("{a}"), QStringLiteral("Home"), TabData::TabTypeHomePage),
        // Distinct data: web tabs with the same data would be the same tab.
        MakeTab(QStringLiteral("{b}"), QStringLiteral("News"), TabData::TabTypeWeb, QStringLiteral("b")),
        MakeTab(QStringLiteral("{c}"), QStringLiteral("Mail"), TabData::TabTypePlugin, QStringLiteral("mail")),
        MakeTab(QStringLiteral("{d}"), QStringLiteral("News"), TabData::TabTypeWeb, QStringLiteral("d")),
        MakeTab(QStringLiteral("{e}"), QStringLiteral("Mail again"), TabData::TabTypePlugin, QStringLiteral("mail")),
    };
    for (const TabDataPtr &tab : tabs) {
        m_owned.push_back(std::make_unique<FakeButton>(tab));
        m_buttons.append(m_owned.back().get());
    }
}

void TstTabLookup::cleanup()
{
    m_buttons.clear();
    m_owned.clear();
}

void TstTabLookup::tabAt_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("id");

    QTest::newRow("first") << 0 << QStringLiteral("{a}");
    QTest::newRow("middle") << 2 << QStringLiteral("{c}");
    QTest::newRow("last") << 4 << QStringLiteral("{e}");
    QTest::newRow("negative") << -1 << QString();
    QTest::newRow("one past the end") << 5 << QString();
    QTest::newRow("far out") << 1000 << QString();
}

void TstTabLookup::tabAt()
{
    QFETCH(int, index);
    QFETCH(QString, id);

    const TabDataPtr tab = TabLookup::TabAt(m_buttons, index);
    if (id.isEmpty()) {
        QVERIFY(tab.isNull());
        return;
    }
    QVERIFY(!tab.isNull());
    QCOMPARE(tab->GetId(), id);
    QCOMPARE(tab, m_buttons.at(index)->GetTabData());
}

void TstTabLookup::indexOfTab()
{
    // The very record.
    QCOMPARE(TabLookup::IndexOfTab(m_buttons, m_buttons.at(1)->GetTabData()), 1);
    // A copy is the same tab: records are compared, not pointers.
    QCOMPARE(TabLookup::IndexOfTab(m_buttons, TabDataPtr::create(*m_buttons.at(3)->GetTabData())), 3);
    // Same type and data but another id: equal to both plug-in tabs, the first wins.
    const TabDataPtr plugin = MakeTab(QStringLiteral("{z}"), QStringLiteral("x"), TabData::TabTypePlugin,
                                      QStringLiteral("mail"));
    QCOMPARE(TabLookup::IndexOfTab(m_buttons, plugin), 2);
    QCOMPARE(TabLookup::IndexOfTab(m_buttons, m_buttons.at(4)->GetTabData()), 2);
}

void TstTabLookup::indexOfTabNullOrMissing()
{
    QCOMPARE(TabLookup::IndexOfTab(m_buttons, TabDataPtr()), -1);
    QCOMPARE(TabLookup::IndexOfTab(m_buttons, MakeTab(QStringLiteral("{zz}"), QStringLiteral("Home"))), -1);
}

void TstTabLookup::indexOfTitle_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<int>("expected");

    QTest::newRow("unique") << QStringLiteral("Home") << 0;
    QTest::newRow("first of two") << QStringLiteral("News") << 1;
    QTest::newRow("exact, not prefix") << QStringLiteral("Mail") << 2;
    QTest::newRow("longer title") << QStringLiteral("Mail again") << 4;
    QTest::newRow("other case") << QStringLiteral("home") << -1;
    QTest::newRow("upper case") << QStringLiteral("NEWS") << -1;
    QTest::newRow("prefix only") << QStringLiteral("Mai") << -1;
    QTest::newRow("trailing space") << QStringLiteral("Home ") << -1;
    QTest::newRow("empty") << QString() << -1;
}

void TstTabLookup::indexOfTitle()
{
    QFETCH(QString, title);
    QFETCH(int, expected);

    QCOMPARE(TabLookup::IndexOfTitle(m_buttons, title), expected);
}

void TstTabLookup::indexOfId_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("expected");

    QTest::newRow("first") << QStringLiteral("{a}") << 0;
    QTest::newRow("last") << QStringLiteral("{e}") << 4;
    QTest::newRow("other case") << QStringLiteral("{A}") << -1;
    QTest::newRow("without braces") << QStringLiteral("a") << -1;
    QTest::newRow("missing") << QStringLiteral("{q}") << -1;
    QTest::newRow("empty") << QString() << -1;
}

void TstTabLookup::indexOfId()
{
    QFETCH(QString, id);
    QFETCH(int, expected);

    QCOMPARE(TabLookup::IndexOfId(m_buttons, id), expected);
}

void TstTabLookup::skipsButtonsWithoutRecord()
{
    FakeButton empty{TabDataPtr()};
    m_buttons.prepend(&empty);

    QVERIFY(TabLookup::TabAt(m_buttons, 0).isNull());
    QCOMPARE(TabLookup::IndexOfTitle(m_buttons, QStringLiteral("Home")), 1);
    QCOMPARE(TabLookup::IndexOfTitle(m_buttons, QString()), -1);
    QCOMPARE(TabLookup::IndexOfId(m_buttons, QStringLiteral("{b}")), 2);
    QCOMPARE(TabLookup::IndexOfTab(m_buttons, m_buttons.at(3)->GetTabData()), 3);
    QCOMPARE(TabLookup::FirstIndex(m_buttons, [](const TabData &) { return true; }), 1);
    m_buttons.removeFirst();
}

void TstTabLookup::emptyList()
{
    const QList<FakeButton *> none;
    QVERIFY(TabLookup::TabAt(none, 0).isNull());
    QCOMPARE(TabLookup::IndexOfTab(none, MakeTab(QStringLiteral("{a}"), QStringLiteral("Home"))), -1);
    QCOMPARE(TabLookup::IndexOfTitle(none, QStringLiteral("Home")), -1);
    QCOMPARE(TabLookup::IndexOfId(none, QStringLiteral("{a}")), -1);
    QCOMPARE(TabLookup::AllTitles(none), QStringList());
}

void TstTabLookup::allTitles()
{
    QCOMPARE(TabLookup::AllTitles(m_buttons),
             QStringList({QStringLiteral("Home"), QStringLiteral("News"), QStringLiteral("Mail"),
                          QStringLiteral("News"), QStringLiteral("Mail again")}));

    FakeButton empty{TabDataPtr()};
    m_buttons.insert(1, &empty);
    const QStringList titles = TabLookup::AllTitles(m_buttons);
    QCOMPARE(titles.size(), 6);
    QCOMPARE(titles.at(1), QString());
    QCOMPARE(titles.at(2), QStringLiteral("News"));
    m_buttons.removeAt(1);
}

KELTAB_TEST_MAIN(TstTabLookup)
#include "tst_tablookup.moc"
