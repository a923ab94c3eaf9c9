#include "keltabtest.h"

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

namespace {

constexpr qint64 OneMiB = 1024 * 1024;

QByteArray MakePng(int width = 16, int height = 16)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(QColor(30, 120, 200));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// A PNG followed by zeros: still a valid image, of exactly @p size bytes.
QByteArray PaddedPng(qint64 size)
{
    QByteArray bytes = MakePng();
    bytes.append(QByteArray(int(size - bytes.size()), '\0'));
    return bytes;
}

/*
 * A tiny HTTP/1.1 server on 127.0.0.1 that answers every request according to its
 * path, closes each connection after answering and counts what it was asked for.
 */
class IconServer : public QObject
{
public:
    explicit IconServer(QObject *parent = nullptr)
        : QObject(parent)
    {
        connect(&m_server, &QTcpServer::newConnection, this, &IconServer::Accept);
    }

    bool Listen() { return m_server.listen(QHostAddress::LocalHost, 0); }

    // A valid icon on disk, for a redirect that must not be followed to it.
    void SetLocalIcon(const QString &path) { m_localIcon = path; }

    QString Url(const QString &path) const
    {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }

    void Reset()
    {
        m_requests.clear();
        m_clientAborts = 0;
    }

    int Requests() const { return m_requests.size(); }
    int RequestsFor(const QByteArray &path) const { return int(m_requests.count(path)); }
    // Connections that the client closed before the server had finished answering.
    int ClientAborts() const { return m_clientAborts; }

private:
    void Accept()
    {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { Read(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    }

    void Read(QTcpSocket *socket)
    {
        if (socket->property("answered").toBool())
            return;
        const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
        socket->setProperty("request", request);
        if (!request.contains("\r\n\r\n"))
            return;
        socket->setProperty("answered", true);
        const QByteArray path = request.left(request.indexOf("\r\n")).split(' ').value(1);
        m_requests.append(path);
        Answer(socket, path);
    }

    void Answer(QTcpSocket *socket, const QByteArray &path)
    {
        if (path.startsWith("/icon")) {
            Send(socket, "200 OK", MakePng());
        } else if (path == "/limit") {
            Send(socket, "200 OK", PaddedPng(OneMiB));
        } else if (path == "/limit-unannounced") {
            Send(socket, "200 OK", PaddedPng(OneMiB), Announce::No);
        } else if (path == "/limit-plus-one") {
            Send(socket, "200 OK", PaddedPng(OneMiB + 1), Announce::No);
        } else if (path == "/big") {
            Send(socket, "200 OK", PaddedPng(2 * OneMiB));
        } else if (path == "/big-unannounced") {
            Send(socket, "200 OK", PaddedPng(2 * OneMiB), Announce::No);
        } else if (path == "/widest") {
            Send(socket, "200 OK", MakePng(VosImageCache::MaxImageDimension, 4));
        } else if (path == "/too-wide") {
            Send(socket, "200 OK", MakePng(VosImageCache::MaxImageDimension + 1, 4));
        } else if (path == "/too-tall") {
            Send(socket, "200 OK", MakePng(4, VosImageCache::MaxImageDimension + 1));
        } else if (path == "/missing") {
            Send(socket, "404 Not Found", "no such icon");
        } else if (path == "/error") {
            Send(socket, "500 Internal Server Error", MakePng());
        } else if (path == "/text") {
            Send(socket, "200 OK", "<html>this is not an icon</html>");
        } else if (path == "/empty") {
            Send(socket, "200 OK", QByteArray());
        } else if (path == "/huge-dimensions") {
            // A header announcing 20000 x 20000 pixels, in a few bytes.
            Send(socket, "200 OK", QByteArray("P6\n20000 20000\n255\n") + QByteArray(1000, '\x7f'));
        } else if (path == "/announces-too-much") {
            // Says 2 MiB up front and then stalls: the header alone must end it.
            connect(socket, &QTcpSocket::disconnected, this, [this] { ++m_clientAborts; });
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: "
                + QByteArray::number(2 * OneMiB) + "\r\n\r\n" + MakePng().left(16));
        } else if (path == "/slow") {
            // Promises an icon, sends its first bytes and then nothing more.
            connect(socket, &QTcpSocket::disconnected, this, [this] { ++m_clientAborts; });
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\nContent-Length: 100000\r\n\r\n"
                + MakePng().left(16));
        } else if (path == "/to-passwd") {
            Redirect(socket, "302 Found", "file:///etc/passwd");
        } else if (path == "/to-local-icon") {
            Redirect(socket, "302 Found", QUrl::fromLocalFile(m_localIcon).toEncoded());
        } else if (path == "/to-ftp") {
            Redirect(socket, "302 Found", Url(QStringLiteral("/icon.png")).replace(0, 4, "ftp").toUtf8());
        } else if (path == "/to-data") {
            Redirect(socket, "302 Found", "data:image/png;base64," + MakePng().toBase64());
        } else if (path == "/to-nowhere") {
            Send(socket, "302 Found", QByteArray());
        } else if (path == "/loop") {
            Redirect(socket, "302 Found", "/loop");
        } else if (path.startsWith("/chain/")) {
            // /chain/N takes N + 1 redirects to reach an icon, through every redirect
            // status and through relative and absolute locations.
            static const char *const statuses[] = {"301 Moved Permanently", "302 Found", "303 See Other",
                                                    "307 Temporary Redirect", "308 Permanent Redirect"};
            const int n = path.mid(7).toInt();
            const QByteArray next = n == 0 ? QByteArray("../icon-chained.png")
                : n % 2 ? Url(QStringLiteral("/chain/%1").arg(n - 1)).toUtf8()
                        : "/chain/" + QByteArray::number(n - 1);
            Redirect(socket, statuses[n % 5], next);
        } else {
            Send(socket, "404 Not Found", QByteArray());
        }
    }

    enum class Announce { Yes, No };

    static void Send(QTcpSocket *socket, const QByteArray &status, const QByteArray &body,
                     Announce announce = Announce::Yes, const QByteArray &headers = QByteArray())
    {
        QByteArray response = "HTTP/1.1 " + status + "\r\nConnection: close\r\n" + headers;
        if (announce == Announce::Yes)
            response += "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        socket->write(response + "\r\n" + body);
        socket->disconnectFromHost();
    }

    static void Redirect(QTcpSocket *socket, const QByteArray &status, const QByteArray &location)
    {
        Send(socket, status, QByteArray(), Announce::Yes, "Location: " + location + "\r\n");
    }

    QTcpServer m_server;
    QList<QByteArray> m_requests;
    QString m_localIcon;
    int m_clientAborts = 0;
};

struct Answer
{
    bool success;
    QString url;
    QString localPath;
};

Answer AnswerAt(const QSignalSpy &spy, int index)
{
    const QList<QVariant> arguments = spy.at(index);
    return {arguments.at(0).toBool(), arguments.at(1).toString(), arguments.at(2).toString()};
}

QByteArray Contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

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

    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(url, false);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 1);
    const Answer answer = AnswerAt(spy, 0);
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

    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(resource, false);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 1);
    Answer answer = AnswerAt(spy, 0);
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
    Cache()->RequestImage(resource, false);
    QCOMPARE(spy.count(), 1);
    QTRY_COMPARE(spy.count(), 2);
    answer = AnswerAt(spy, 1);
    QCOMPARE(answer.success, true);
    QCOMPARE(answer.localPath, copy);
    QCOMPARE(Contents(copy), QByteArray("marker"));

    Cache()->RequestImage(resource, true);
    QCOMPARE(spy.count(), 2);
    QTRY_COMPARE(spy.count(), 3);
    answer = AnswerAt(spy, 2);
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

    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(url, false);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 1);
    const Answer answer = AnswerAt(spy, 0);
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

    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(url, false);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 1);
    const Answer answer = AnswerAt(spy, 0);
    QCOMPARE(answer.success, false);
    QCOMPARE(answer.url, url);
    QCOMPARE(answer.localPath, QString());
    QCOMPARE(m_server.Requests(), requests);
    QCOMPARE(CacheEntries(), QStringList());

    // Failures are not cached: asking again asks the server again.
    Cache()->RequestImage(url, false);
    QTRY_COMPARE(spy.count(), 2);
    QCOMPARE(AnswerAt(spy, 1).success, false);
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

    QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
    Cache()->RequestImage(url, false);
    QCOMPARE(spy.count(), 0);
    QTRY_COMPARE(spy.count(), 1);
    const Answer answer = AnswerAt(spy, 0);
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
