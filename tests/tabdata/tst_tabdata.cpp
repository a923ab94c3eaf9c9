// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "tabdata.h"

#include <QRegularExpression>
#include <QThread>
#include <QTranslator>

namespace {

TabData Record(TabData::TabType type, const QString &data = QString())
{
    TabData record;
    record.SetTabType(type);
    record.SetData(data);
    return record;
}

// Translates "New tab" in the context QObject, as a host's translation file would.
class GermanTranslator : public QTranslator
{
public:
    QString translate(const char *context, const char *sourceText, const char *, int) const override
    {
        if (qstrcmp(context, "QObject") == 0 && qstrcmp(sourceText, "New tab") == 0)
            return QStringLiteral("Neuer Tab");
        return QString();
    }
    bool isEmpty() const override { return false; }
};

class Receiver : public QObject
{
    Q_OBJECT
public:
    TabDataPtr received;
    QThread *receivedIn = nullptr;
public Q_SLOTS:
    void Take(TabDataPtr tab)
    {
        received = tab;
        receivedIn = QThread::currentThread();
    }
};

class Sender : public QObject
{
    Q_OBJECT
Q_SIGNALS:
    void Send(TabDataPtr tab);
};

} // namespace


class TstTabData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Must run first: the new-tab name is translated once per process, at the first call.
    void newTabNameIsTranslatedOnceAtFirstCall();

    void defaultConstructedRecord();
    void defaultRecordsHaveDifferentIdsButCompareEqual();
    void copyKeepsTheId();
    void assignmentCopiesEveryField();
    void selfAssignmentChangesNothing();
    void predicatesAreExactComparisons_data();
    void predicatesAreExactComparisons();
    void setUrlIgnoredForTypesWithoutUrl_data();
    void setUrlIgnoredForTypesWithoutUrl();
    void getUrlForTypesWithUrl_data();
    void getUrlForTypesWithUrl();
    void urlSurvivesATypeChangeInTheExtension();
    void pluginCodeOnlyForPluginTabs_data();
    void pluginCodeOnlyForPluginTabs();
    void equality_data();
    void equality();
    void isEqualWithNullPointerIsFalse();
    void isEqualWithPointer();
    void isEqualWithIdIsExact();
    void ordering_data();
    void ordering();
    void pointerTypeIsRegisteredByName();
    void pointerTravelsThroughQueuedConnectionToAnotherThread();
};

void TstTabData::newTabNameIsTranslatedOnceAtFirstCall()
{
    GermanTranslator translator;
    QVERIFY(QCoreApplication::installTranslator(&translator));
    QCOMPARE(TabData::GetNewTabName(), QStringLiteral("Neuer Tab"));
    QCoreApplication::removeTranslator(&translator);
    // The text was computed once; removing the translation does not change it.
    QCOMPARE(TabData::GetNewTabName(), QStringLiteral("Neuer Tab"));
}

void TstTabData::defaultConstructedRecord()
{
    const TabData record;
    static const QRegularExpression braced(QStringLiteral(
        "^\\{[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}\\}$"));
    QCOMPARE(record.GetId().size(), 38);
    QVERIFY2(braced.match(record.GetId()).hasMatch(), qPrintable(record.GetId()));
    QCOMPARE(record.GetTabType(), TabData::TabTypeNone);
    QCOMPARE(int(record.GetTabType()), 0);
    QVERIFY(record.GetTitle().isEmpty());
    QVERIFY(record.GetIconUrl().isEmpty());
    QVERIFY(record.GetData().isEmpty());
    // The extension is the integer 0, deliberately not an invalid variant.
    QVERIFY(record.GetVarExtend().isValid());
    QCOMPARE(record.GetVarExtend().userType(), int(QMetaType::Int));
    QCOMPARE(record.GetVarExtend().toInt(), 0);
}

void TstTabData::defaultRecordsHaveDifferentIdsButCompareEqual()
{
    const TabData a;
    const TabData b;
    QVERIFY(a.GetId() != b.GetId());
    QVERIFY(a == b);
    QVERIFY(a.IsEqual(b));
    QVERIFY(b.IsEqual(a));
}

void TstTabData::copyKeepsTheId()
{
    TabData source = Record(TabData::TabTypeWeb, QStringLiteral("d"));
    source.SetTitle(QStringLiteral("Title"));
    const TabData copy(source);
    QCOMPARE(copy.GetId(), source.GetId());
    QVERIFY(copy.IsEqual(source.GetId()));
    QCOMPARE(copy.GetTitle(), QStringLiteral("Title"));
    QCOMPARE(copy.GetTabType(), TabData::TabTypeWeb);
}

void TstTabData::assignmentCopiesEveryField()
{
    TabData source = Record(TabData::TabTypeWeb, QStringLiteral("data"));
    source.SetTitle(QStringLiteral("t"));
    source.SetIconUrl(QStringLiteral("https://example.org/favicon.ico"));
    source.SetUrl(QStringLiteral("https://example.org/"));
    TabData target;
    target = source;
    QCOMPARE(target.GetId(), source.GetId());
    QCOMPARE(target.GetTabType(), source.GetTabType());
    QCOMPARE(target.GetTitle(), source.GetTitle());
    QCOMPARE(target.GetIconUrl(), source.GetIconUrl());
    QCOMPARE(target.GetData(), source.GetData());
    QCOMPARE(target.GetVarExtend(), source.GetVarExtend());
}

void TstTabData::selfAssignmentChangesNothing()
{
    TabData record = Record(TabData::TabTypePlugin, QStringLiteral("notes"));
    const QString id = record.GetId();
    TabData &alias = record;
    record = alias;
    QCOMPARE(record.GetId(), id);
    QCOMPARE(record.GetPluginCode(), QStringLiteral("notes"));
}

void TstTabData::predicatesAreExactComparisons_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("truePredicate");
    QTest::newRow("none") << 0 << QString();
    QTest::newRow("new tab") << 1 << QStringLiteral("IsNewTab");
    QTest::newRow("home page") << 2 << QStringLiteral("IsHomePage");
    QTest::newRow("other") << 3 << QString();
    QTest::newRow("web") << 4 << QStringLiteral("IsWeb");
    QTest::newRow("web popup") << 5 << QStringLiteral("IsWebPopup");
    QTest::newRow("plugin") << 6 << QStringLiteral("IsPlugin");
    QTest::newRow("out of the enum") << 7 << QString();
    QTest::newRow("negative") << -1 << QString();
}

void TstTabData::predicatesAreExactComparisons()
{
    QFETCH(int, type);
    QFETCH(QString, truePredicate);
    TabData record;
    record.SetTabType(static_cast<TabData::TabType>(type));
    QCOMPARE(record.IsNewTab(), truePredicate == QLatin1String("IsNewTab"));
    QCOMPARE(record.IsHomePage(), truePredicate == QLatin1String("IsHomePage"));
    QCOMPARE(record.IsWeb(), truePredicate == QLatin1String("IsWeb"));
    QCOMPARE(record.IsWebPopup(), truePredicate == QLatin1String("IsWebPopup"));
    QCOMPARE(record.IsPlugin(), truePredicate == QLatin1String("IsPlugin"));
}

void TstTabData::setUrlIgnoredForTypesWithoutUrl_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("none") << 0;
    QTest::newRow("new tab") << 1;
    QTest::newRow("other") << 3;
    QTest::newRow("plugin") << 6;
}

void TstTabData::setUrlIgnoredForTypesWithoutUrl()
{
    QFETCH(int, type);
    TabData record;
    record.SetTabType(static_cast<TabData::TabType>(type));
    record.SetUrl(QStringLiteral("https://example.org/"));
    QVERIFY(record.GetUrl().isEmpty());
    QCOMPARE(record.GetVarExtend().userType(), int(QMetaType::Int));
    QCOMPARE(record.GetVarExtend().toInt(), 0);
}

void TstTabData::getUrlForTypesWithUrl_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("home page") << 2;
    QTest::newRow("web") << 4;
    QTest::newRow("web popup") << 5;
}

void TstTabData::getUrlForTypesWithUrl()
{
    QFETCH(int, type);
    TabData record;
    record.SetTabType(static_cast<TabData::TabType>(type));
    record.SetUrl(QStringLiteral("https://example.org/a?b=c"));
    QCOMPARE(record.GetUrl(), QStringLiteral("https://example.org/a?b=c"));
    QCOMPARE(record.GetVarExtend().toString(), QStringLiteral("https://example.org/a?b=c"));
}

void TstTabData::urlSurvivesATypeChangeInTheExtension()
{
    TabData record;
    record.SetTabType(TabData::TabTypeWeb);
    record.SetUrl(QStringLiteral("u"));
    QCOMPARE(record.GetUrl(), QStringLiteral("u"));
    record.SetTabType(TabData::TabTypePlugin);
    QVERIFY(record.GetUrl().isEmpty());
    QCOMPARE(record.GetVarExtend(), QVariant(QStringLiteral("u")));
}

void TstTabData::pluginCodeOnlyForPluginTabs_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("expected");
    for (int type = 0; type <= 6; ++type)
        QTest::addRow("type %d", type) << type << (type == 6 ? QStringLiteral("notes") : QString());
}

void TstTabData::pluginCodeOnlyForPluginTabs()
{
    QFETCH(int, type);
    QFETCH(QString, expected);
    const TabData record = Record(static_cast<TabData::TabType>(type), QStringLiteral("notes"));
    QCOMPARE(record.GetPluginCode(), expected);
    QCOMPARE(record.GetData(), QStringLiteral("notes"));
}

void TstTabData::equality_data()
{
    QTest::addColumn<int>("typeA");
    QTest::addColumn<QString>("dataA");
    QTest::addColumn<int>("typeB");
    QTest::addColumn<QString>("dataB");
    QTest::addColumn<bool>("sameId");
    QTest::addColumn<bool>("equal");
    QTest::newRow("same id, everything else differs") << 4 << "a" << 6 << "b" << true << true;
    QTest::newRow("same type and data, different ids") << 6 << "notes" << 6 << "notes" << false << true;
    QTest::newRow("same type, different data") << 6 << "notes" << 6 << "mail" << false << false;
    QTest::newRow("same data, different type") << 4 << "x" << 5 << "x" << false << false;
    QTest::newRow("data compared case-sensitively") << 6 << "Notes" << 6 << "notes" << false << false;
}

void TstTabData::equality()
{
    QFETCH(int, typeA);
    QFETCH(QString, dataA);
    QFETCH(int, typeB);
    QFETCH(QString, dataB);
    QFETCH(bool, sameId);
    QFETCH(bool, equal);
    TabData a = Record(static_cast<TabData::TabType>(typeA), dataA);
    TabData b = Record(static_cast<TabData::TabType>(typeB), dataB);
    a.SetTitle(QStringLiteral("title a"));
    b.SetTitle(QStringLiteral("title b"));
    a.SetIconUrl(QStringLiteral("a.png"));
    if (sameId)
        b.SetId(a.GetId());
    QCOMPARE(a == b, equal);
    QCOMPARE(a.IsEqual(b), equal);
    QCOMPARE(b.IsEqual(a), equal);
    QCOMPARE(a.IsEqual(TabDataPtr(new TabData(b))), equal);
}

void TstTabData::isEqualWithNullPointerIsFalse()
{
    const TabData record;
    QVERIFY(!record.IsEqual(TabDataPtr()));
}

void TstTabData::isEqualWithPointer()
{
    TabDataPtr tab(new TabData(Record(TabData::TabTypeWeb, QStringLiteral("x"))));
    QVERIFY(tab->IsEqual(tab));
    QVERIFY(!tab->IsEqual(TabDataPtr(new TabData(Record(TabData::TabTypeWeb, QStringLiteral("y"))))));
}

void TstTabData::isEqualWithIdIsExact()
{
    TabData record;
    record.SetId(QStringLiteral("{ABC}"));
    QVERIFY(record.IsEqual(QStringLiteral("{ABC}")));
    QVERIFY(!record.IsEqual(QStringLiteral("{abc}")));
    QVERIFY(!record.IsEqual(QStringLiteral("ABC")));
    QVERIFY(!record.IsEqual(QString()));
}

void TstTabData::ordering_data()
{
    QTest::addColumn<int>("typeA");
    QTest::addColumn<QString>("dataA");
    QTest::addColumn<int>("typeB");
    QTest::addColumn<QString>("dataB");
    QTest::addColumn<bool>("aLess");
    QTest::addColumn<bool>("bLess");
    QTest::newRow("home page before plugin, whatever the data") << 2 << "zzz" << 6 << "aaa" << true << false;
    QTest::newRow("home page before plugin, empty data") << 2 << "" << 6 << "" << true << false;
    QTest::newRow("same type: data decides") << 4 << "a" << 4 << "b" << true << false;
    QTest::newRow("same type and data: neither") << 4 << "a" << 4 << "a" << false << false;
    QTest::newRow("signed type comparison") << -1 << "z" << 0 << "a" << true << false;
}

void TstTabData::ordering()
{
    QFETCH(int, typeA);
    QFETCH(QString, dataA);
    QFETCH(int, typeB);
    QFETCH(QString, dataB);
    QFETCH(bool, aLess);
    QFETCH(bool, bLess);
    const TabData a = Record(static_cast<TabData::TabType>(typeA), dataA);
    const TabData b = Record(static_cast<TabData::TabType>(typeB), dataB);
    QCOMPARE(a < b, aLess);
    QCOMPARE(b < a, bLess);
}

void TstTabData::pointerTypeIsRegisteredByName()
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    const int id = QMetaType::fromName("TabDataPtr").id();
#else
    const int id = QMetaType::type("TabDataPtr");
#endif
    QVERIFY(id != QMetaType::UnknownType);
    QCOMPARE(id, qMetaTypeId<TabDataPtr>());
}

void TstTabData::pointerTravelsThroughQueuedConnectionToAnotherThread()
{
    QThread worker;
    Receiver receiver;
    receiver.moveToThread(&worker);
    worker.start();

    Sender sender;
    connect(&sender, &Sender::Send, &receiver, &Receiver::Take, Qt::QueuedConnection);
    // The string-based form needs the type by its registered name.
    QVERIFY(QObject::connect(&sender, SIGNAL(Send(TabDataPtr)), &receiver, SLOT(Take(TabDataPtr)),
                             Qt::QueuedConnection));

    TabDataPtr tab(new TabData);
    tab->SetTabType(TabData::TabTypeWeb);
    tab->SetTitle(QStringLiteral("Qt"));
    tab->SetUrl(QStringLiteral("https://www.qt.io/"));
    tab->SetData(QStringLiteral("payload"));
    tab->SetIconUrl(QStringLiteral("icon.png"));
    Q_EMIT sender.Send(tab);

    QTRY_VERIFY(receiver.received);
    worker.quit();
    QVERIFY(worker.wait(5000));
    QCOMPARE(receiver.receivedIn, &worker);
    QCOMPARE(receiver.received.data(), tab.data());
    QCOMPARE(receiver.received->GetId(), tab->GetId());
    QCOMPARE(receiver.received->GetTitle(), QStringLiteral("Qt"));
    QCOMPARE(receiver.received->GetUrl(), QStringLiteral("https://www.qt.io/"));
    QCOMPARE(receiver.received->GetData(), QStringLiteral("payload"));
    QCOMPARE(receiver.received->GetIconUrl(), QStringLiteral("icon.png"));
}

KELTAB_TEST_MAIN(TstTabData)
#include "tst_tabdata.moc"
