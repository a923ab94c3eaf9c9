// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "dpitool.h"
#include "idpiadapter.h"

#include <functional>
#include <memory>

namespace {

// Counts its calls in an external counter, so that a test can still read the
// count of an adapter that was destroyed.
class CountingAdapter : public IDpiAdapter
{
public:
    explicit CountingAdapter(int *counter = nullptr)
        : m_counter(counter)
    {
    }

    void AdjustForDpi() override
    {
        ++calls;
        if (m_counter)
            ++*m_counter;
        if (onAdjust)
            onAdjust();
    }

    int calls = 0;
    std::function<void()> onAdjust;

private:
    int *m_counter;
};

} // namespace

class TstIDpiAdapter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void liveAdapterCount();
    void copiesRegisterThemselves();
    void everyLiveAdapterCalledOnceOnChange();
    void callsOnlyWhenTheFactorInForceChanges_data();
    void callsOnlyWhenTheFactorInForceChanges();
    void destroyedAdapterIsNeverCalled();
    void adapterDeletedByAnotherInsideAdjust_data();
    void adapterDeletedByAnotherInsideAdjust();
    void adapterCreatedInsideAdjustIsLive();
    void notifyAllCallsEveryAdapter();
    void defaultAdjustDoesNothing();

private:
    int m_baseCount = 0;
};

void TstIDpiAdapter::init()
{
    DpiTool::SetScaleFactor(1.0);
    m_baseCount = IDpiAdapter::LiveAdapterCount();
}

void TstIDpiAdapter::cleanup()
{
    // Every adapter a test makes must be gone when it ends.
    QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount);
    DpiTool::SetScaleFactor(0.0);
}

void TstIDpiAdapter::liveAdapterCount()
{
    {
        CountingAdapter a;
        QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 1);
        auto b = std::make_unique<CountingAdapter>();
        QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 2);
        b.reset();
        QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 1);
    }
    QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount);
}

void TstIDpiAdapter::copiesRegisterThemselves()
{
    CountingAdapter original;
    {
        CountingAdapter copy(original);
        QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 2);

        // Assignment keeps both registered once each.
        CountingAdapter other;
        other = original;
        QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 3);

        DpiTool::SetScaleFactor(1.5);
        QCOMPARE(original.calls, 1);
        QCOMPARE(copy.calls, 1);
        QCOMPARE(other.calls, 1);
    }
    // The copy unregistered only itself.
    QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 1);
    DpiTool::SetScaleFactor(2.0);
    QCOMPARE(original.calls, 2);
}

void TstIDpiAdapter::everyLiveAdapterCalledOnceOnChange()
{
    CountingAdapter a;
    CountingAdapter b;
    CountingAdapter c;

    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(a.calls, 1);
    QCOMPARE(b.calls, 1);
    QCOMPARE(c.calls, 1);

    DpiTool::SetScaleFactor(2.0);
    QCOMPARE(a.calls, 2);
    QCOMPARE(b.calls, 2);
    QCOMPARE(c.calls, 2);
}

// The adapter is made under the factor "before", then the factors are set in turn;
// "calls" is its count after each, "inForce" the factor in force at the end (0.0 sets
// back the screen's own factor, 1.0 on the offscreen screen).
void TstIDpiAdapter::callsOnlyWhenTheFactorInForceChanges_data()
{
    QTest::addColumn<double>("before");
    QTest::addColumn<QList<double>>("factors");
    QTest::addColumn<QList<int>>("calls");
    QTest::addColumn<double>("inForce");
    QTest::addRow("unchanged factor calls none")
        << 1.0 << QList<double>{1.0, 1.5, 1.5} << QList<int>{0, 1, 1} << 1.5;
    // The offscreen screen already has factor 1.0: fixing 1.0 changes nothing in force.
    QTest::addRow("fixing the screen factor calls none")
        << 0.0 << QList<double>{1.0, 0.0} << QList<int>{0, 0} << 1.0;
    QTest::addRow("return to the screen factor calls when it differs")
        << 2.0 << QList<double>{0.0} << QList<int>{1} << 1.0;
}

void TstIDpiAdapter::callsOnlyWhenTheFactorInForceChanges()
{
    QFETCH(double, before);
    QFETCH(QList<double>, factors);
    QFETCH(QList<int>, calls);
    QFETCH(double, inForce);

    DpiTool::SetScaleFactor(before);
    CountingAdapter a;
    for (int i = 0; i < factors.size(); ++i) {
        DpiTool::SetScaleFactor(factors.at(i));
        QCOMPARE(a.calls, calls.at(i));
    }
    QCOMPARE(DpiTool::ScaleFactor(), inForce);
}

void TstIDpiAdapter::destroyedAdapterIsNeverCalled()
{
    int keptCalls = 0;
    int destroyedCalls = 0;
    CountingAdapter kept(&keptCalls);
    auto destroyed = std::make_unique<CountingAdapter>(&destroyedCalls);
    destroyed.reset();

    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(keptCalls, 1);
    QCOMPARE(destroyedCalls, 0);
}

void TstIDpiAdapter::adapterDeletedByAnotherInsideAdjust_data()
{
    QTest::addColumn<bool>("victimFirst");
    QTest::addColumn<int>("victimCalls");

    // Registered before the killer, the victim has had its turn when it dies.
    QTest::newRow("victim registered first") << true << 1;
    // Registered after the killer, it dies before its turn and must be skipped.
    QTest::newRow("victim registered last") << false << 0;
}

void TstIDpiAdapter::adapterDeletedByAnotherInsideAdjust()
{
    QFETCH(bool, victimFirst);
    QFETCH(int, victimCalls);

    int victimCounter = 0;
    int bystanderCounter = 0;
    std::unique_ptr<CountingAdapter> victim;
    if (victimFirst)
        victim = std::make_unique<CountingAdapter>(&victimCounter);
    CountingAdapter killer;
    if (!victimFirst)
        victim = std::make_unique<CountingAdapter>(&victimCounter);
    CountingAdapter bystander(&bystanderCounter);
    killer.onAdjust = [&victim] { victim.reset(); };

    DpiTool::SetScaleFactor(1.5);
    QVERIFY(!victim);
    QCOMPARE(killer.calls, 1);
    QCOMPARE(victimCounter, victimCalls);
    QCOMPARE(bystanderCounter, 1);
    QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 2);
}

void TstIDpiAdapter::adapterCreatedInsideAdjustIsLive()
{
    std::unique_ptr<CountingAdapter> created;
    CountingAdapter creator;
    creator.onAdjust = [&created] {
        if (!created)
            created = std::make_unique<CountingAdapter>();
    };

    DpiTool::SetScaleFactor(1.5);
    QVERIFY(created);
    QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 2);
    const int callsAfterFirstChange = created->calls;
    QVERIFY(callsAfterFirstChange <= 1);

    DpiTool::SetScaleFactor(2.0);
    QCOMPARE(created->calls, callsAfterFirstChange + 1);
    created.reset();
}

void TstIDpiAdapter::notifyAllCallsEveryAdapter()
{
    CountingAdapter a;
    CountingAdapter b;
    IDpiAdapter::NotifyAll();
    QCOMPARE(a.calls, 1);
    QCOMPARE(b.calls, 1);
}

void TstIDpiAdapter::defaultAdjustDoesNothing()
{
    // An adapter that does not override AdjustForDpi() may still be registered.
    IDpiAdapter plain;
    QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 1);
    DpiTool::SetScaleFactor(1.5);
    QCOMPARE(IDpiAdapter::LiveAdapterCount(), m_baseCount + 1);
}

KELTAB_TEST_MAIN(TstIDpiAdapter)
#include "tst_idpiadapter.moc"
