// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "browsermainnotify.h"
#include "singletontest.h"

#include <QPointer>
#include <QThread>


class TstBrowserMainNotify : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void instanceTwiceIsTheSameObject();
    void releaseWithoutInstanceDoesNothing();
    void releaseTwiceDoesNothingTheSecondTime();
    void instanceAfterReleaseIsANewWorkingObject();
    void offTheGuiThreadIsRefused();
    void releaseFromItsOwnDestruction();
    void signalTable_data();
    void signalTable();
    void signalsReachListenersInOtherThreads();
};

void TstBrowserMainNotify::cleanup()
{
    BrowserMainNotify::ReleaseInstance();
}

void TstBrowserMainNotify::instanceTwiceIsTheSameObject()
{
    BrowserMainNotify *first = BrowserMainNotify::Instance();
    QVERIFY(first);
    QCOMPARE(BrowserMainNotify::Instance(), first);
    QVERIFY(!first->parent());
}

void TstBrowserMainNotify::releaseWithoutInstanceDoesNothing()
{
    BrowserMainNotify::ReleaseInstance();
    BrowserMainNotify::ReleaseInstance();
    QVERIFY(BrowserMainNotify::Instance());
}

void TstBrowserMainNotify::releaseTwiceDoesNothingTheSecondTime()
{
    QPointer<BrowserMainNotify> hub = BrowserMainNotify::Instance();
    BrowserMainNotify::ReleaseInstance();
    QVERIFY(hub.isNull());
    BrowserMainNotify::ReleaseInstance();
    QVERIFY(hub.isNull());
}

void TstBrowserMainNotify::instanceAfterReleaseIsANewWorkingObject()
{
    QPointer<BrowserMainNotify> old = BrowserMainNotify::Instance();
    QSignalSpy oldSpy(old.data(), &BrowserMainNotify::SigFullscreenChanged);
    BrowserMainNotify::ReleaseInstance();
    QVERIFY(old.isNull());

    BrowserMainNotify *fresh = BrowserMainNotify::Instance();
    QVERIFY(fresh);
    QSignalSpy spy(fresh, &BrowserMainNotify::SigFullscreenChanged);
    Q_EMIT fresh->SigFullscreenChanged(true);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toBool(), true);
    QCOMPARE(oldSpy.count(), 0);
}

// A first call from a worker thread used to make the hub there.
void TstBrowserMainNotify::offTheGuiThreadIsRefused()
{
    SingletonTest::CheckRefusedOffTheGuiThread<BrowserMainNotify>("BrowserMainNotify");
}

void TstBrowserMainNotify::releaseFromItsOwnDestruction()
{
    SingletonTest::CheckQObjectReleaseFromItsOwnDestruction<BrowserMainNotify>();
}

void TstBrowserMainNotify::signalTable_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<QByteArray>("parameterNames");
    QTest::newRow("0") << 0 << QByteArray("SigLoadStart(TabDataPtr)") << QByteArray("data");
    QTest::newRow("1") << 1 << QByteArray("SigLoadFinished(TabDataPtr)") << QByteArray("data");
    QTest::newRow("2") << 2 << QByteArray("SigWebTitleChanged(TabDataPtr,QString)") << QByteArray("tabData,strTitle");
    QTest::newRow("3") << 3 << QByteArray("SigWebIconChanged(TabDataPtr,QString)") << QByteArray("tabData,strIconPath");
    QTest::newRow("4") << 4 << QByteArray("SigCloseTab(TabDataPtr)") << QByteArray("tabData");
    QTest::newRow("5") << 5 << QByteArray("SigWebStatusChanged(TabDataPtr,bool,bool,bool)")
                       << QByteArray("data,isLoading,canGoBack,canGoForward");
    QTest::newRow("6") << 6 << QByteArray("SigAddressChanged(TabDataPtr,QUrl)") << QByteArray("data,url");
    QTest::newRow("7") << 7 << QByteArray("SigGetZoomPercent(TabDataPtr,double,bool,bool)")
                       << QByteArray("tabData,zoomPercent,isMax,isMin");
    QTest::newRow("8") << 8 << QByteArray("SigFullscreenChanged(bool)") << QByteArray("fullscreen");
}

void TstBrowserMainNotify::signalTable()
{
    QFETCH(int, index);
    QFETCH(QByteArray, signature);
    QFETCH(QByteArray, parameterNames);
    const QMetaObject &meta = BrowserMainNotify::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 9);
    const QMetaMethod method = meta.method(meta.methodOffset() + index);
    QCOMPARE(method.methodType(), QMetaMethod::Signal);
    QCOMPARE(method.methodSignature(), signature);
    QCOMPARE(method.parameterNames().join(','), parameterNames);
}

void TstBrowserMainNotify::signalsReachListenersInOtherThreads()
{
    struct Listener : QObject {
        QString title;
        TabDataPtr tab;
        QAtomicPointer<QThread> thread;
    };
    QThread worker;
    Listener listener;
    listener.moveToThread(&worker);
    worker.start();
    BrowserMainNotify *hub = BrowserMainNotify::Instance();
    connect(hub, &BrowserMainNotify::SigWebTitleChanged, &listener,
            [&listener](TabDataPtr tab, const QString &title) {
                listener.tab = tab;
                listener.title = title;
                listener.thread.storeRelease(QThread::currentThread());
            });

    TabDataPtr tab(new TabData);
    Q_EMIT hub->SigWebTitleChanged(tab, QStringLiteral("Hello"));
    QTRY_VERIFY(listener.thread.loadAcquire());
    worker.quit();
    QVERIFY(worker.wait(5000));
    QCOMPARE(listener.thread.loadAcquire(), &worker);
    QCOMPARE(listener.title, QStringLiteral("Hello"));
    QCOMPARE(listener.tab.data(), tab.data());
}

KELTAB_TEST_MAIN(TstBrowserMainNotify)
#include "tst_browsermainnotify.moc"
