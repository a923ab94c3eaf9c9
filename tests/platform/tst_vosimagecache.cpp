// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "iconserver.h"
#include "vosimagecache.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QImage>
#include <QNetworkProxy>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>

#include <memory>


class TstVosImageCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void defaultTimeoutIsFifteenSeconds();
    void defaultCacheDirectoryIsUnderCacheLocation();
    void localFileResolvesToItself_data();
    void localFileResolvesToItself();
    void resourceIsWrittenOnce();
    void downloadsIconIntoCache_data();
    void downloadsIconIntoCache();
    void cachedIconIsServedWithoutNetwork();
    void forceRefreshDownloadsAgain();
    void requestsInFlightShareOneDownload();
    void failedDownloadLeavesNothing_data();
    void failedDownloadLeavesNothing();
    void slowDownloadTimesOut();
    void unsupportedAddressFails_data();
    void unsupportedAddressFails();
    void releaseAbortsDownloadsWithoutAnswer();
    void releaseFromInsideAnswer();
    void receiverDeletedBeforeAnswer();
    void receiverDisconnectingInsideAnswer();

private:
    VosImageCache *Cache() const { return VosImageCache::Instance(); }
    QStringList CacheEntries() const
    {
        return QDir(m_cacheDir).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    IconServer m_server;
    QTemporaryDir m_fixtures;
    std::unique_ptr<QTemporaryDir> m_temp;
    QString m_cacheDir;
};

void TstVosImageCache::initTestCase()
{
    // Every address in this test is 127.0.0.1; make sure no proxy setting of the
    // machine sends it anywhere else.
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QVERIFY(m_server.Listen());
    QVERIFY(m_fixtures.isValid());
    const QString localIcon = m_fixtures.filePath(QStringLiteral("icon.png"));
    QFile out(localIcon);
    QVERIFY(out.open(QIODevice::WriteOnly));
    out.write(MakePng());
    m_server.SetLocalIcon(localIcon);
}

void TstVosImageCache::init()
{
    m_server.Reset();
    m_temp = std::make_unique<QTemporaryDir>();
    QVERIFY(m_temp->isValid());
    // A folder that does not exist yet: the cache creates it when it first writes.
    m_cacheDir = m_temp->filePath(QStringLiteral("icons"));
    Cache()->SetCacheDirectory(m_cacheDir);
}

void TstVosImageCache::cleanup()
{
    VosImageCache::ReleaseInstance();
    m_temp.reset();
}

void TstVosImageCache::defaultTimeoutIsFifteenSeconds()
{
    QCOMPARE(Cache()->TimeoutMs(), 15000);
    QCOMPARE(int(VosImageCache::DefaultTimeoutMs), 15000);

    Cache()->SetTimeoutMs(500);
    QCOMPARE(Cache()->TimeoutMs(), 500);
    Cache()->SetTimeoutMs(0);
    QCOMPARE(Cache()->TimeoutMs(), 15000);
    Cache()->SetTimeoutMs(-20);
    QCOMPARE(Cache()->TimeoutMs(), 15000);

    // The default is what a download really gets: a stalled one is still waiting
    // after a second.
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(m_server.Url(QStringLiteral("/slow")), false);
    QVERIFY(!spy.wait(1000));
    QCOMPARE(m_server.RequestsFor("/slow"), 1);

    // A new instance starts with the default again.
    Cache()->SetTimeoutMs(500);
    VosImageCache::ReleaseInstance();
    QCOMPARE(Cache()->TimeoutMs(), 15000);
}

void TstVosImageCache::defaultCacheDirectoryIsUnderCacheLocation()
{
    VosImageCache::ReleaseInstance();
    const QString base = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    QVERIFY(!base.isEmpty());
    QVERIFY2(Cache()->CacheDirectory().startsWith(base + QLatin1Char('/')), qPrintable(Cache()->CacheDirectory()));

    Cache()->SetCacheDirectory(m_cacheDir);
    QCOMPARE(Cache()->CacheDirectory(), m_cacheDir);
    Cache()->SetCacheDirectory(QString());
    QVERIFY(Cache()->CacheDirectory().startsWith(base + QLatin1Char('/')));
}

void TstVosImageCache::localFileResolvesToItself_data()
{
    QTest::addColumn<bool>("asUrl");
    QTest::newRow("absolute path") << false;
    QTest::newRow("file URL") << true;
}

void TstVosImageCache::localFileResolvesToItself()
{
    QFETCH(bool, asUrl);
    const QString file = m_temp->filePath(QStringLiteral("local icon.png"));
    {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(MakePng());
    }
    const QString url = asUrl ? QUrl::fromLocalFile(file).toString() : file;

    Answer answer;
    QCOMPARE(RequestOnce(Cache(), url, &answer), QString());
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.url, url);
    QCOMPARE(answer.localPath, file);
    QCOMPARE(CacheEntries(), QStringList());
}

void TstVosImageCache::resourceIsWrittenOnce()
{
    const QString resource = QStringLiteral(":/images/tab_bar/tab_button_loading.png");
    const QByteArray original = Contents(resource);
    QVERIFY(!original.isEmpty());

    Answer answer;
    QCOMPARE(RequestOnce(Cache(), resource, &answer), QString());
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.url, resource);
    const QString copy = answer.localPath;
    QCOMPARE(QFileInfo(copy).absolutePath(), m_cacheDir);
    QCOMPARE(Contents(copy), original);

    // Mark the copy: a second request must hand it back untouched.
    {
        QFile out(copy);
        QVERIFY(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write("marker");
    }
    QCOMPARE(RequestOnce(Cache(), resource, &answer), QString());
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.localPath, copy);
    QCOMPARE(Contents(copy), QByteArray("marker"));

    QCOMPARE(RequestOnce(Cache(), resource, &answer, true), QString());
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.localPath, copy);
    QCOMPARE(Contents(copy), original);
    QCOMPARE(CacheEntries(), QStringList(QFileInfo(copy).fileName()));
}

void TstVosImageCache::downloadsIconIntoCache_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("requests");

    QTest::newRow("icon") << m_server.Url(QStringLiteral("/icon.png")) << MakePng() << 1;
    QTest::newRow("upper-case scheme")
        << m_server.Url(QStringLiteral("/icon.png")).replace(0, 4, QStringLiteral("HTTP")) << MakePng() << 1;
    QTest::newRow("path traversal in the address")
        << m_server.Url(QStringLiteral("/icon.png?name=../../../escaped.png")) << MakePng() << 1;
    QTest::newRow("exactly 1 MiB announced") << m_server.Url(QStringLiteral("/limit")) << PaddedPng(OneMiB) << 1;
    QTest::newRow("exactly 1 MiB unannounced")
        << m_server.Url(QStringLiteral("/limit-unannounced")) << PaddedPng(OneMiB) << 1;
    QTest::newRow("largest picture")
        << m_server.Url(QStringLiteral("/widest")) << MakePng(VosImageCache::MaxImageDimension, 4) << 1;
    QTest::newRow("one redirect") << m_server.Url(QStringLiteral("/chain/0")) << MakePng() << 2;
    QTest::newRow("five redirects") << m_server.Url(QStringLiteral("/chain/4")) << MakePng() << 6;
}

void TstVosImageCache::downloadsIconIntoCache()
{
    QFETCH(QString, url);
    QFETCH(QByteArray, body);
    QFETCH(int, requests);

    Answer answer;
    QCOMPARE(RequestOnce(Cache(), url, &answer), QString());
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.url, url);
    QCOMPARE(m_server.Requests(), requests);

    // Named from a hash of the address, inside the cache directory, whatever the
    // address says.
    const QFileInfo info(answer.localPath);
    QCOMPARE(info.absolutePath(), m_cacheDir);
    QVERIFY2(QRegularExpression(QStringLiteral("^[0-9a-f]{64}\\.img$")).match(info.fileName()).hasMatch(),
             qPrintable(info.fileName()));
    QCOMPARE(Contents(answer.localPath), body);
    QCOMPARE(CacheEntries(), QStringList(info.fileName()));
    QVERIFY(!QImage(answer.localPath).isNull());
}

void TstVosImageCache::cachedIconIsServedWithoutNetwork()
{
    const QString url = m_server.Url(QStringLiteral("/icon.png"));
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(url, false);
    QTRY_COMPARE(spy.count(), 1);
    const QString path = AnswerAt(spy, 0).localPath;
    QCOMPARE(m_server.Requests(), 1);

    Cache()->RequestImage(url, false);
    QCOMPARE(spy.count(), 1);
    QTRY_COMPARE(spy.count(), 2);
    const Answer answer = AnswerAt(spy, 1);
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.url, url);
    QCOMPARE(answer.localPath, path);
    QCOMPARE(m_server.Requests(), 1);

    // The copy on disk outlives the instance.
    VosImageCache::ReleaseInstance();
    Cache()->SetCacheDirectory(m_cacheDir);
    QSignalSpy again(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(url, false);
    QTRY_COMPARE(again.count(), 1);
    QCOMPARE(AnswerAt(again, 0).localPath, path);
    QCOMPARE(m_server.Requests(), 1);
}

void TstVosImageCache::forceRefreshDownloadsAgain()
{
    const QString url = m_server.Url(QStringLiteral("/icon.png"));
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(url, false);
    QTRY_COMPARE(spy.count(), 1);
    const QString path = AnswerAt(spy, 0).localPath;
    QFile::remove(path);
    {
        QFile out(path);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write("stale");
    }

    Cache()->RequestImage(url, true);
    QCOMPARE(spy.count(), 1);
    QTRY_COMPARE(spy.count(), 2);
    const Answer answer = AnswerAt(spy, 1);
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.localPath, path);
    QCOMPARE(m_server.Requests(), 2);
    QCOMPARE(Contents(path), MakePng());
}

void TstVosImageCache::requestsInFlightShareOneDownload()
{
    const QString first = m_server.Url(QStringLiteral("/icon-first.png"));
    const QString second = m_server.Url(QStringLiteral("/icon-second.png"));
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(first, false);
    Cache()->RequestImage(second, false);
    Cache()->RequestImage(first, false);
    Cache()->RequestImage(first, true);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 4);

    QHash<QString, int> answers;
    QHash<QString, QString> paths;
    for (int i = 0; i < spy.count(); ++i) {
        const Answer answer = AnswerAt(spy, i);
        QCOMPARE(answer.success, true);
        ++answers[answer.url];
        if (paths.contains(answer.url))
            QCOMPARE(answer.localPath, paths.value(answer.url));
        paths.insert(answer.url, answer.localPath);
    }
    QCOMPARE(answers.value(first), 3);
    QCOMPARE(answers.value(second), 1);
    QVERIFY(paths.value(first) != paths.value(second));
    QCOMPARE(m_server.RequestsFor("/icon-first.png"), 1);
    QCOMPARE(m_server.RequestsFor("/icon-second.png"), 1);
}

void TstVosImageCache::failedDownloadLeavesNothing_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<int>("requests");

    const auto row = [this](const char *name, const char *path, int requests) {
        QTest::newRow(name) << m_server.Url(QString::fromLatin1(path)) << requests;
    };
    row("not found", "/missing", 1);
    row("server error", "/error", 1);
    row("2 MiB announced", "/big", 1);
    row("2 MiB unannounced", "/big-unannounced", 1);
    row("2 MiB announced, then stalled", "/announces-too-much", 1);
    row("one byte over 1 MiB", "/limit-plus-one", 1);
    row("not an image", "/text", 1);
    row("empty body", "/empty", 1);
    row("huge dimensions", "/huge-dimensions", 1);
    row("too wide", "/too-wide", 1);
    row("too tall", "/too-tall", 1);
    row("redirect to /etc/passwd", "/to-passwd", 1);
    row("redirect to a local icon", "/to-local-icon", 1);
    row("redirect to ftp", "/to-ftp", 1);
    row("redirect to data", "/to-data", 1);
    row("redirect without location", "/to-nowhere", 1);
    row("redirect loop", "/loop", 6);
    row("six redirects", "/chain/5", 6);

    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost, 0));
    const quint16 port = closed.serverPort();
    closed.close();
    QTest::newRow("connection refused") << QStringLiteral("http://127.0.0.1:%1/icon.png").arg(port) << 0;
}

void TstVosImageCache::failedDownloadLeavesNothing()
{
    QFETCH(QString, url);
    QFETCH(int, requests);

    Answer answer;
    QCOMPARE(RequestOnce(Cache(), url, &answer), QString());
    QCOMPARE(answer.success, false);
    QCOMPARE(answer.url, url);
    QCOMPARE(answer.localPath, QString());
    QCOMPARE(m_server.Requests(), requests);
    QCOMPARE(CacheEntries(), QStringList());

    // Failures are not cached: asking again asks the server again.
    QCOMPARE(RequestOnce(Cache(), url, &answer), QString());
    QCOMPARE(answer.success, false);
    QCOMPARE(m_server.Requests(), 2 * requests);
    QCOMPARE(CacheEntries(), QStringList());
}

void TstVosImageCache::slowDownloadTimesOut()
{
    Cache()->SetTimeoutMs(500);
    const QString url = m_server.Url(QStringLiteral("/slow"));
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    QElapsedTimer clock;
    clock.start();
    Cache()->RequestImage(url, false);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE_WITH_TIMEOUT(spy.count(), 1, 10000);
    QVERIFY2(clock.elapsed() >= 400, qPrintable(QString::number(clock.elapsed())));
    const Answer answer = AnswerAt(spy, 0);
    QCOMPARE(answer.success, false);
    QCOMPARE(answer.url, url);
    QCOMPARE(answer.localPath, QString());
    QCOMPARE(m_server.Requests(), 1);
    QCOMPARE(CacheEntries(), QStringList());
    // The connection is given up, not left hanging.
    QTRY_COMPARE(m_server.ClientAborts(), 1);
}

void TstVosImageCache::unsupportedAddressFails_data()
{
    QTest::addColumn<QString>("url");

    const QString icon = m_server.Url(QStringLiteral("/icon.png"));
    QTest::newRow("empty") << QString();
    QTest::newRow("ftp") << QString(icon).replace(0, 4, QStringLiteral("ftp"));
    QTest::newRow("javascript") << QStringLiteral("javascript:alert(1)");
    QTest::newRow("data") << QString(QStringLiteral("data:image/png;base64,") + QString::fromLatin1(MakePng().toBase64()));
    QTest::newRow("mailto") << QStringLiteral("mailto:icons@127.0.0.1");
    QTest::newRow("relative path") << QStringLiteral("images/icon.png");
    QTest::newRow("bare file name") << QStringLiteral("icon.png");
    QTest::newRow("scheme-relative") << QString(icon).mid(5);
    QTest::newRow("http without host") << QStringLiteral("http://");
    QTest::newRow("https without host") << QStringLiteral("https://");
    QTest::newRow("http with path only") << QStringLiteral("http:/icon.png");
    QTest::newRow("unclosed IPv6 host") << QStringLiteral("http://[::1");
    QTest::newRow("port out of range") << QStringLiteral("http://127.0.0.1:99999/icon.png");
    QTest::newRow("very long") << QString(icon + QLatin1Char('?') + QString(100000, QLatin1Char('a')));
    QTest::newRow("missing local file") << QStringLiteral("/nonexistent/keltab/icon.png");
    QTest::newRow("missing file URL") << QStringLiteral("file:///nonexistent/keltab/icon.png");
    QTest::newRow("directory") << QDir::rootPath();
    QTest::newRow("missing resource") << QStringLiteral(":/keltab/no/such/icon.png");
}

void TstVosImageCache::unsupportedAddressFails()
{
    QFETCH(QString, url);

    Answer answer;
    QCOMPARE(RequestOnce(Cache(), url, &answer), QString());
    QCOMPARE(answer.success, false);
    QCOMPARE(answer.url, url);
    QCOMPARE(answer.localPath, QString());
    QCOMPARE(m_server.Requests(), 0);
    QCOMPARE(CacheEntries(), QStringList());
}

void TstVosImageCache::releaseAbortsDownloadsWithoutAnswer()
{
    const QString file = m_temp->filePath(QStringLiteral("local.png"));
    {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(MakePng());
    }
    int answers = 0;
    QObject receiver;
    connect(Cache(), &VosImageCache::SigRequestImageFinished, &receiver, [&answers] { ++answers; });
    Cache()->RequestImage(m_server.Url(QStringLiteral("/slow")), false);
    QTRY_COMPARE(m_server.RequestsFor("/slow"), 1);
    // Also pending: an answer already decided but not yet delivered, and a download
    // that has not reached the server yet.
    Cache()->RequestImage(file, false);
    Cache()->RequestImage(m_server.Url(QStringLiteral("/icon.png")), false);

    VosImageCache::ReleaseInstance();
    QTRY_COMPARE(m_server.ClientAborts(), 1);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCOMPARE(answers, 0);
    QCOMPARE(CacheEntries(), QStringList());

    // A new instance works as usual.
    Cache()->SetCacheDirectory(m_cacheDir);
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(m_server.Url(QStringLiteral("/icon.png")), false);
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(AnswerAt(spy, 0).success, true);
}

void TstVosImageCache::releaseFromInsideAnswer()
{
    const QString url = m_server.Url(QStringLiteral("/icon.png"));
    int answers = 0;
    QObject receiver;
    connect(Cache(), &VosImageCache::SigRequestImageFinished, &receiver, [&answers] {
        ++answers;
        VosImageCache::ReleaseInstance();
    });
    Cache()->RequestImage(url, false);
    Cache()->RequestImage(url, false);
    QTRY_COMPARE(answers, 1);
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    QCOMPARE(answers, 1);
    QCOMPARE(m_server.Requests(), 1);
}

void TstVosImageCache::receiverDeletedBeforeAnswer()
{
    const QString url = m_server.Url(QStringLiteral("/icon.png"));
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    int answers = 0;
    auto receiver = std::make_unique<QObject>();
    connect(Cache(), &VosImageCache::SigRequestImageFinished, receiver.get(), [&answers] { ++answers; });
    Cache()->RequestImage(url, false);
    receiver.reset();
    QTRY_COMPARE(spy.count(), 1);
    QCOMPARE(AnswerAt(spy, 0).success, true);
    QCOMPARE(answers, 0);
}

void TstVosImageCache::receiverDisconnectingInsideAnswer()
{
    // What a tab button does: listen until its own answer arrives, then stop.
    const QString mine = m_server.Url(QStringLiteral("/icon-mine.png"));
    const QString other = m_server.Url(QStringLiteral("/icon-other.png"));
    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    QStringList heard;
    QObject receiver;
    QMetaObject::Connection connection;
    connection = connect(Cache(), &VosImageCache::SigRequestImageFinished, &receiver,
                         [&](bool, const QString &url, const QString &) {
                             heard.append(url);
                             if (url == mine)
                                 disconnect(connection);
                         });
    Cache()->RequestImage(mine, false);
    QTRY_COMPARE(spy.count(), 1);
    Cache()->RequestImage(other, false);
    QTRY_COMPARE(spy.count(), 2);
    QCOMPARE(heard, QStringList(mine));
}

KELTAB_TEST_MAIN(TstVosImageCache)

#include "tst_vosimagecache.moc"
