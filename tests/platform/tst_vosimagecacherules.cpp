// SPDX-License-Identifier: MIT
#include "keltabtest.h"

#include "iconserver.h"
#include "singletontest.h"
#include "vosimagecache.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageWriter>
#include <QNetworkProxy>
#include <QProcess>
#include <QRegularExpression>
#include <QSslConfiguration>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <zlib.h>

#include <memory>

// The icon cache's rules for untrusted icons and for the resources it keeps: what
// it decodes, where it follows redirects, which files it never touches, how much
// it inflates, and how much it keeps in memory and on disk. Each rule is tested
// against the local server.

namespace {

// @p bytes followed by @p zeros zero bytes, compressed as a gzip (@p gzip) or zlib
// stream, a piece at a time: a bomb is made without holding what it inflates to.
QByteArray Compress(const QByteArray &bytes, bool gzip, qint64 zeros = 0)
{
    z_stream z{};
    if (deflateInit2(&z, Z_BEST_COMPRESSION, Z_DEFLATED, gzip ? 31 : 15, 9, Z_DEFAULT_STRATEGY) != Z_OK)
        return QByteArray();
    QByteArray out;
    char chunk[65536];
    const QByteArray zeroPiece(1024 * 1024, '\0');
    const auto feed = [&](const QByteArray &input, int flush) {
        z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(input.constData()));
        z.avail_in = uInt(input.size());
        int status = Z_OK;
        do {
            z.next_out = reinterpret_cast<Bytef *>(chunk);
            z.avail_out = sizeof chunk;
            status = deflate(&z, flush);
            out.append(chunk, int(sizeof chunk - z.avail_out));
        } while (z.avail_out == 0);
        return status;
    };
    feed(bytes, Z_NO_FLUSH);
    for (qint64 left = zeros; left > 0; left -= zeroPiece.size())
        feed(zeroPiece.left(int(qMin<qint64>(left, zeroPiece.size()))), Z_NO_FLUSH);
    const int status = feed(QByteArray(), Z_FINISH);
    deflateEnd(&z);
    return status == Z_STREAM_END ? out : QByteArray();
}

QByteArray Encode(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return image.save(&buffer, format) ? bytes : QByteArray();
}

QImage Picture(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(QColor(200, 60, 30));
    return image;
}

// A 1 x 1 GIF, by hand: Qt reads GIF but does not write it.
QByteArray TinyGif()
{
    return QByteArray::fromHex("474946383961010001008000000000" "00ffffff21f90401000000002c00000000010001000002024401003b");
}

QByteArray Svg(const QByteArray &inside, const QByteArray &prolog = QByteArray())
{
    return prolog + "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
                    "width=\"16\" height=\"16\" viewBox=\"0 0 16 16\">"
        + inside + "<rect width=\"16\" height=\"16\" fill=\"#36c\"/></svg>";
}

qint64 PeakResidentKiB()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

} // namespace

class TstVosImageCacheRules : public QObject
{
    Q_OBJECT

private:
    IconServer m_server;
    IconServer m_tlsServer;
    QTemporaryDir m_fixtures;
    std::unique_ptr<QTemporaryDir> m_temp;
    QString m_cacheDir;

    VosImageCache *Cache() const { return VosImageCache::Instance(); }

    QStringList CacheEntries() const
    {
        return QDir(m_cacheDir).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }

    // Asks for @p url and waits for the answer.
    Answer Request(const QString &url)
    {
        QSignalSpy spy(Cache(), &VosImageCache::SigRequestImageFinished);
        Cache()->RequestImage(url, false);
        if (!spy.wait(10000) && spy.isEmpty())
            return {false, QStringLiteral("<no answer>"), QString()};
        return AnswerAt(spy, 0);
    }

    void Serve(const QByteArray &path, const QByteArray &body, const QByteArray &headers = QByteArray())
    {
        m_server.SetResponse(path, {"200 OK", body, headers});
    }

    bool MakeCertificate(QSslCertificate &certificate, QSslKey &key)
    {
        const QString keyFile = m_fixtures.filePath(QStringLiteral("key.pem"));
        const QString certificateFile = m_fixtures.filePath(QStringLiteral("certificate.pem"));
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
                      {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"), QStringLiteral("ec"),
                       QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"),
                       QStringLiteral("-nodes"), QStringLiteral("-keyout"), keyFile, QStringLiteral("-out"),
                       certificateFile, QStringLiteral("-days"), QStringLiteral("2"), QStringLiteral("-subj"),
                       QStringLiteral("/CN=127.0.0.1"), QStringLiteral("-addext"),
                       QStringLiteral("subjectAltName=IP:127.0.0.1")});
        if (!openssl.waitForFinished(30000) || openssl.exitCode() != 0)
            return false;
        const QList<QSslCertificate> certificates = QSslCertificate::fromPath(certificateFile);
        QFile keyData(keyFile);
        if (certificates.isEmpty() || !keyData.open(QIODevice::ReadOnly))
            return false;
        certificate = certificates.first();
        key = QSslKey(keyData.readAll(), QSsl::Ec);
        return !key.isNull();
    }

private Q_SLOTS:
    void initTestCase()
    {
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        QVERIFY(m_fixtures.isValid());
        QVERIFY(m_server.Listen());
        QVERIFY2(QSslSocket::supportsSsl(), "Qt finds no TLS library");
        QSslCertificate certificate;
        QSslKey key;
        QVERIFY2(MakeCertificate(certificate, key), "openssl could not make a test certificate");
        QVERIFY(m_tlsServer.ListenTls(certificate, key));
        // Trusted as any public site's would be, so the cache needs no exception.
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setCaCertificates(configuration.caCertificates() << certificate);
        QSslConfiguration::setDefaultConfiguration(configuration);
    }

    void init()
    {
        m_server.Reset();
        m_tlsServer.Reset();
        m_temp = std::make_unique<QTemporaryDir>();
        QVERIFY(m_temp->isValid());
        m_cacheDir = m_temp->filePath(QStringLiteral("icons"));
        Cache()->SetCacheDirectory(m_cacheDir);
    }

    void cleanup()
    {
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        VosImageCache::ReleaseInstance();
        m_temp.reset();
    }

    // --- compressed bodies ---------------------------------------------------------

    // A small body that inflates to gigabytes must cost little more memory than the
    // limit: Qt inflated it in bulk (tens of MiB for this one) before the cache
    // could count. First, so that the peak it measures is its own.
    void compressedBombStaysSmall()
    {
        const QByteArray bomb = Compress(MakePng(), true, 512 * OneMiB);
        QVERIFY(!bomb.isEmpty());
        QVERIFY(bomb.size() < int(OneMiB));
        Serve("/bomb", bomb, "Content-Encoding: gzip\r\n");
        const qint64 before = PeakResidentKiB();
        QElapsedTimer clock;
        clock.start();
        QCOMPARE(Request(m_server.Url(QStringLiteral("/bomb"))).success, false);
        const qint64 grown = PeakResidentKiB() - before;
        QVERIFY2(grown < 24 * 1024, qPrintable(QStringLiteral("peak memory grew by %1 KiB").arg(grown)));
        QCOMPARE(CacheEntries(), QStringList());
    }

    // --- formats -----------------------------------------------------------------

    // Any installed image plugin used to decode untrusted bytes (PPM, XPM, TIFF,
    // TGA, ...), each a parser more to attack.
    void onlyIconFormatsDecode_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("accepted");
        const QImage picture = Picture(8, 8);
        QTest::newRow("PNG") << Encode(picture, "PNG") << true;
        QTest::newRow("JPEG") << Encode(picture, "JPEG") << true;
        QTest::newRow("BMP") << Encode(picture, "BMP") << true;
        QTest::newRow("GIF") << TinyGif() << true;
        QTest::newRow("SVG") << Svg(QByteArray()) << true;
        QTest::newRow("SVG with an XML declaration") << Svg(QByteArray(), "<?xml version=\"1.0\"?>\n") << true;
        QTest::newRow("PPM") << Encode(picture, "PPM") << false;
        QTest::newRow("PBM") << Encode(picture, "PBM") << false;
        QTest::newRow("XPM") << Encode(picture, "XPM") << false;
        QTest::newRow("XBM") << Encode(picture, "XBM") << false;
        const QList<QByteArray> writable = QImageWriter::supportedImageFormats();
        if (writable.contains("ico"))
            QTest::newRow("ICO") << Encode(picture, "ICO") << true;
        if (writable.contains("webp"))
            QTest::newRow("WebP") << Encode(picture, "WEBP") << true;
        if (writable.contains("tiff"))
            QTest::newRow("TIFF") << Encode(picture, "TIFF") << false;
        if (writable.contains("wbmp"))
            QTest::newRow("WBMP") << Encode(picture, "WBMP") << false;
        if (writable.contains("icns"))
            QTest::newRow("ICNS") << Encode(picture, "ICNS") << false;
        // A PNG signature in front of bytes that are not one.
        QTest::newRow("PNG signature, other bytes") << QByteArray("\x89PNG\r\n\x1a\n") + Encode(picture, "PPM") << false;
    }

    void onlyIconFormatsDecode()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, accepted);
        QVERIFY(!body.isEmpty());
        Serve("/format", body);
        const Answer answer = Request(m_server.Url(QStringLiteral("/format")));
        QCOMPARE(answer.success, accepted);
        QCOMPARE(CacheEntries().size(), accepted ? 1 : 0);
        if (accepted) {
            QCOMPARE(Contents(answer.localPath), body);
            QVERIFY(!Cache()->Image(answer.url).isNull());
        }
    }

    // An SVG is a document that may point at other files, which the SVG renderer
    // would read from disk (or a share) while decoding an icon from the web.
    void svgWithExternalReferencesIsRefused_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("inner reference") << Svg("<defs><rect id=\"a\" width=\"2\" height=\"2\"/></defs>"
                                                "<use xlink:href=\"#a\"/>")
                                         << true;
        QTest::newRow("image from a file") << Svg("<image xlink:href=\"file:///etc/hostname\" width=\"4\" height=\"4\"/>")
                                           << false;
        QTest::newRow("image from a path") << Svg("<image href=\"/etc/hostname\" width=\"4\" height=\"4\"/>") << false;
        QTest::newRow("image from the web")
            << Svg("<image xlink:href=\"http://127.0.0.1:1/x.png\" width=\"4\" height=\"4\"/>") << false;
        QTest::newRow("image from a data address")
            << Svg("<image xlink:href=\"data:image/png;base64," + Encode(Picture(2, 2), "PNG").toBase64()
                   + "\" width=\"4\" height=\"4\"/>")
            << false;
        QTest::newRow("use of another file") << Svg("<use xlink:href=\"other.svg#a\"/>") << false;
        QTest::newRow("external entity")
            << Svg("<text>&x;</text>", "<?xml version=\"1.0\"?>\n<!DOCTYPE svg [<!ENTITY x SYSTEM \"file:///etc/hostname\">]>\n")
            << false;
        QTest::newRow("internal entity")
            << Svg("<text>&x;</text>", "<!DOCTYPE svg [<!ENTITY x \"xxxxxxxxxxxxxxxx\">]>\n") << false;
        QTest::newRow("style sheet instruction")
            << Svg(QByteArray(), "<?xml-stylesheet type=\"text/css\" href=\"file:///etc/style.css\"?>\n") << false;
        QTest::newRow("imported style") << Svg("<style>@import url(file:///etc/style.css);</style>") << false;
        QTest::newRow("public document type")
            << Svg(QByteArray(), "<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" "
                                 "\"http://www.w3.org/Graphics/SVG/1.1/DTD/svg11.dtd\">\n")
            << true;
        QTest::newRow("not an svg root") << QByteArray("<html><body>icon</body></html>") << false;
        QTest::newRow("huge canvas") << QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"30000\" "
                                                   "height=\"30000\"><rect width=\"1\" height=\"1\"/></svg>")
                                     << false;
    }

    void svgWithExternalReferencesIsRefused()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, accepted);
        Serve("/picture.svg", body);
        const Answer answer = Request(m_server.Url(QStringLiteral("/picture.svg")));
        QCOMPARE(answer.success, accepted);
        QCOMPARE(CacheEntries().size(), accepted ? 1 : 0);
    }

    // --- size --------------------------------------------------------------------

    // Up to 2048 pixels a side were decoded: 16 MiB of pixels for one tab icon.
    void largerThan1024PixelsIsRefused_data()
    {
        QTest::addColumn<int>("width");
        QTest::addColumn<int>("height");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("1024 x 1024") << 1024 << 1024 << true;
        QTest::newRow("1025 x 1") << 1025 << 1 << false;
        QTest::newRow("1 x 1025") << 1 << 1025 << false;
        QTest::newRow("2048 x 2048") << 2048 << 2048 << false;
    }

    void largerThan1024PixelsIsRefused()
    {
        QFETCH(int, width);
        QFETCH(int, height);
        QFETCH(bool, accepted);
        QCOMPARE(int(VosImageCache::MaxImageDimension), 1024);
        Serve("/sized.png", Encode(Picture(width, height), "PNG"));
        QCOMPARE(Request(m_server.Url(QStringLiteral("/sized.png"))).success, accepted);
    }

    // The limit holds for what a compressed body decodes to, as it streams in.
    void compressedBodiesCountDecodedBytes_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("encoding");
        QTest::addColumn<bool>("accepted");
        const QByteArray png = MakePng();
        QTest::newRow("gzip icon") << Compress(png, true) << QByteArray("gzip") << true;
        QTest::newRow("deflate icon") << Compress(png, false) << QByteArray("deflate") << true;
        QTest::newRow("gzip, exactly 1 MiB decoded") << Compress(PaddedPng(OneMiB), true) << QByteArray("gzip") << true;
        QTest::newRow("gzip, 1 MiB + 1 decoded") << Compress(PaddedPng(OneMiB + 1), true) << QByteArray("gzip")
                                                 << false;
        QTest::newRow("gzip, 64 MiB decoded") << Compress(MakePng(), true, 64 * OneMiB) << QByteArray("gzip")
                                              << false;
        QTest::newRow("gzip cut short") << Compress(png, true).left(40) << QByteArray("gzip") << false;
        QTest::newRow("not gzip at all") << png << QByteArray("gzip") << false;
        QTest::newRow("unknown encoding") << png << QByteArray("br") << false;
    }

    void compressedBodiesCountDecodedBytes()
    {
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, encoding);
        QFETCH(bool, accepted);
        QVERIFY(!body.isEmpty());
        Serve("/packed", body, "Content-Encoding: " + encoding + "\r\n");
        const Answer answer = Request(m_server.Url(QStringLiteral("/packed")));
        QCOMPARE(answer.success, accepted);
        if (accepted)
            QVERIFY(!QImage(answer.localPath).isNull());
        else
            QCOMPARE(CacheEntries(), QStringList());
    }

    // --- redirects ----------------------------------------------------------------

    // Redirects from https to http handed the request to anyone on the way.
    void httpsNeverRedirectsToHttp()
    {
        // The server itself works over TLS.
        QVERIFY(Request(m_tlsServer.Url(QStringLiteral("/icon.png"))).success);
        m_tlsServer.Reset();

        const QString plain = m_server.Url(QStringLiteral("/icon.png"));
        Answer answer = Request(m_tlsServer.Url(QStringLiteral("/redirect?to=")) + QUrl::toPercentEncoding(plain));
        QCOMPARE(answer.success, false);
        QCOMPARE(m_tlsServer.Requests(), 1);
        QCOMPARE(m_server.Requests(), 0);

        // https to https is followed.
        const QString secure = m_tlsServer.Url(QStringLiteral("/icon-again.png"));
        answer = Request(m_tlsServer.Url(QStringLiteral("/redirect?to=")) + QUrl::toPercentEncoding(secure));
        QCOMPARE(answer.success, true);
        // And http to https too.
        answer = Request(m_server.Url(QStringLiteral("/redirect?to=")) + QUrl::toPercentEncoding(secure));
        QCOMPARE(answer.success, true);
    }

    // A public site could point the cache at the user's router or at services on
    // the user's own machine. The local server stands in for the public site as
    // its proxy, so no address outside this machine is ever contacted.
    void publicHostNeverRedirectsToAPrivateOne_data()
    {
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("followed");
        QTest::newRow("loopback") << m_server.Url(QStringLiteral("/icon.png")) << false;
        QTest::newRow("localhost") << QStringLiteral("http://localhost:%1/icon.png").arg(m_server.Port()) << false;
        QTest::newRow("127.0.0.1 in decimal") << QStringLiteral("http://2130706433:%1/icon.png").arg(m_server.Port())
                                              << false;
        QTest::newRow("IPv6 loopback") << QStringLiteral("http://[::1]:%1/icon.png").arg(m_server.Port()) << false;
        QTest::newRow("IPv4-mapped loopback")
            << QStringLiteral("http://[::ffff:127.0.0.1]:%1/icon.png").arg(m_server.Port()) << false;
        QTest::newRow("private network") << QStringLiteral("http://192.168.1.1/icon.png") << false;
        QTest::newRow("10/8") << QStringLiteral("http://10.0.0.1/icon.png") << false;
        QTest::newRow("172.16/12") << QStringLiteral("http://172.20.0.1/icon.png") << false;
        QTest::newRow("link-local") << QStringLiteral("http://169.254.169.254/latest/meta-data") << false;
        QTest::newRow("IPv6 link-local") << QStringLiteral("http://[fe80::1]/icon.png") << false;
        QTest::newRow("IPv6 unique local") << QStringLiteral("http://[fd00::1]/icon.png") << false;
        QTest::newRow("unspecified") << QStringLiteral("http://0.0.0.0/icon.png") << false;
        QTest::newRow("local name") << QStringLiteral("http://printer.local/icon.png") << false;
        QTest::newRow("name without a dot") << QStringLiteral("http://router/icon.png") << false;
        QTest::newRow("another public host") << QStringLiteral("http://icons.example/icon.png") << true;
    }

    void publicHostNeverRedirectsToAPrivateOne()
    {
        QFETCH(QString, target);
        QFETCH(bool, followed);
        QNetworkProxy::setApplicationProxy(
            QNetworkProxy(QNetworkProxy::HttpProxy, QStringLiteral("127.0.0.1"), m_server.Port()));
        const QString url = QStringLiteral("http://site.example/redirect?to=") + QUrl::toPercentEncoding(target);
        const Answer answer = Request(url);
        QCOMPARE(answer.success, followed);
        QCOMPARE(m_server.ProxiedHosts().value(0), QByteArray("site.example"));
        // Refused before any request was made to the private address.
        QCOMPARE(m_server.Requests(), followed ? 2 : 1);
    }

    // The local server answers its own redirects: loopback to loopback stays fine.
    void privateHostMayRedirectToAPrivateOne()
    {
        const QString target = QStringLiteral("http://localhost:%1/icon.png").arg(m_server.Port());
        QVERIFY(Request(m_server.Url(QStringLiteral("/redirect?to=")) + QUrl::toPercentEncoding(target)).success);
    }

    // --- local files ----------------------------------------------------------------

    // file://host/share made Windows look up a network share, synchronously: a
    // frozen window and the user's credentials sent to the host. Here the same
    // texts name local paths, which shows that they are refused, not missed.
    void fileOnAnotherMachineIsRefused_data()
    {
        QTest::addColumn<QString>("url");
        const QString icon = m_fixtures.filePath(QStringLiteral("local.png"));
        QTest::newRow("file URL with a host") << QStringLiteral("file://server/share/icon.png");
        QTest::newRow("file URL with localhost") << QStringLiteral("file://localhost") + icon;
        QTest::newRow("file URL with a share path") << QStringLiteral("file:///") + icon;
        QTest::newRow("share path") << QLatin1Char('/') + icon;
        QTest::newRow("share path with backslashes") << QStringLiteral("\\\\server\\share\\icon.png");
    }

    void fileOnAnotherMachineIsRefused()
    {
        QFETCH(QString, url);
        const QString icon = m_fixtures.filePath(QStringLiteral("local.png"));
        QFile file(icon);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(MakePng());
        file.close();
        // The plain forms do work.
        QVERIFY(Request(icon).success);
        QVERIFY(Request(QUrl::fromLocalFile(icon).toString()).success);

        QElapsedTimer clock;
        clock.start();
        const Answer answer = Request(url);
        QCOMPARE(answer.success, false);
        QCOMPARE(answer.url, url);
        QVERIFY(clock.elapsed() < 2000);
        QCOMPARE(m_server.Requests(), 0);
    }

    // --- budgets -------------------------------------------------------------------

    void budgetsHaveDefaults()
    {
        QCOMPARE(Cache()->MemoryBudget(), 32 * OneMiB);
        QCOMPARE(Cache()->DiskBudget(), 64 * OneMiB);
        Cache()->SetMemoryBudget(1000);
        Cache()->SetDiskBudget(2000);
        QCOMPARE(Cache()->MemoryBudget(), qint64(1000));
        QCOMPARE(Cache()->DiskBudget(), qint64(2000));
        Cache()->SetMemoryBudget(0);
        Cache()->SetDiskBudget(-1);
        QCOMPARE(Cache()->MemoryBudget(), 32 * OneMiB);
        QCOMPARE(Cache()->DiskBudget(), 64 * OneMiB);
    }

    // Nothing was ever let go: a long session kept every icon it had seen.
    void memoryKeepsTheRecentlyUsedWithinItsBudget()
    {
        // 64 x 64 ARGB32 icons: 16 KiB each; room for two.
        const qint64 each = Picture(64, 64).sizeInBytes();
        Cache()->SetMemoryBudget(2 * each + each / 2);
        for (const char *name : {"/a.png", "/b.png", "/c.png"})
            Serve(name, Encode(Picture(64, 64), "PNG"));
        const QString a = m_server.Url(QStringLiteral("/a.png"));
        const QString b = m_server.Url(QStringLiteral("/b.png"));
        const QString c = m_server.Url(QStringLiteral("/c.png"));
        QVERIFY(Request(a).success);
        QVERIFY(Request(b).success);
        QCOMPARE(Cache()->MemoryUsage(), 2 * each);
        QVERIFY(!Cache()->Image(a).isNull()); // a is used again, so b is the oldest
        QVERIFY(Request(c).success);
        QCOMPARE(Cache()->MemoryUsage(), 2 * each);

        // Without the files only what memory holds is left.
        for (const QString &entry : CacheEntries())
            QVERIFY(QFile::remove(m_cacheDir + QLatin1Char('/') + entry));
        QVERIFY(!Cache()->Image(a).isNull());
        QVERIFY(!Cache()->Image(c).isNull());
        QVERIFY(Cache()->Image(b).isNull());

        // A smaller budget applies at once; an image larger than all of it is not kept.
        Cache()->SetMemoryBudget(each / 2);
        QCOMPARE(Cache()->MemoryUsage(), qint64(0));
        QVERIFY(Cache()->Image(a).isNull());
    }

    void imageIsDecodedAgainFromItsFile()
    {
        const QString url = m_server.Url(QStringLiteral("/icon.png"));
        QVERIFY(Request(url).success);
        VosImageCache::ReleaseInstance();
        Cache()->SetCacheDirectory(m_cacheDir);
        QCOMPARE(Cache()->MemoryUsage(), qint64(0));
        const QImage image = Cache()->Image(url);
        QCOMPARE(image.size(), QSize(16, 16));
        QVERIFY(Cache()->MemoryUsage() > 0);
        QVERIFY(Cache()->Image(m_server.Url(QStringLiteral("/never-asked.png"))).isNull());
    }

    // Nothing was ever removed: the icon folder grew for ever.
    void diskKeepsTheRecentlyUsedWithinItsBudget()
    {
        // Files left by an earlier session count too, and go first; files that are
        // not the cache's stay.
        QVERIFY(QDir().mkpath(m_cacheDir));
        const QString old = m_cacheDir + QStringLiteral("/0000000000000000000000000000000000000000000000000000000000000000.img");
        QFile leftOver(old);
        QVERIFY(leftOver.open(QIODevice::WriteOnly));
        leftOver.write(QByteArray(3000, 'x'));
        leftOver.setFileTime(QDateTime::currentDateTime().addDays(-30), QFileDevice::FileModificationTime);
        leftOver.close();
        const QString foreign = m_cacheDir + QStringLiteral("/README.txt");
        QFile readme(foreign);
        QVERIFY(readme.open(QIODevice::WriteOnly));
        readme.write(QByteArray(5000, 'r'));
        readme.close();

        const QByteArray body = PaddedPng(1000);
        for (const char *name : {"/1.png", "/2.png", "/3.png", "/4.png"})
            Serve(name, body);
        Cache()->SetDiskBudget(3 * 1000 + 500);
        QCOMPARE(Cache()->DiskUsage(), qint64(3000));

        Answer first = Request(m_server.Url(QStringLiteral("/1.png")));
        QVERIFY(first.success);
        QVERIFY(!QFile::exists(old));
        QCOMPARE(Cache()->DiskUsage(), qint64(1000));
        const Answer second = Request(m_server.Url(QStringLiteral("/2.png")));
        const Answer third = Request(m_server.Url(QStringLiteral("/3.png")));
        QVERIFY(second.success && third.success);
        QCOMPARE(Cache()->DiskUsage(), qint64(3000));

        // Serving the first again makes the second the oldest.
        first = Request(m_server.Url(QStringLiteral("/1.png")));
        QVERIFY(first.success);
        const Answer fourth = Request(m_server.Url(QStringLiteral("/4.png")));
        QVERIFY(fourth.success);
        QCOMPARE(Cache()->DiskUsage(), qint64(3000));
        QVERIFY(QFile::exists(first.localPath));
        QVERIFY(!QFile::exists(second.localPath));
        QVERIFY(QFile::exists(third.localPath));
        QVERIFY(QFile::exists(fourth.localPath));
        QVERIFY(QFile::exists(foreign));

        // A smaller budget applies at once.
        Cache()->SetDiskBudget(1500);
        QCOMPARE(Cache()->DiskUsage(), qint64(1000));
        QVERIFY(QFile::exists(fourth.localPath));
    }

    // --- instance -------------------------------------------------------------------

    void offTheGuiThreadIsRefused()
    {
        SingletonTest::CheckRefusedOffTheGuiThread<VosImageCache>("VosImageCache");
    }

    void releaseFromItsOwnDestruction()
    {
        SingletonTest::CheckQObjectReleaseFromItsOwnDestruction<VosImageCache>();
    }
};

KELTAB_TEST_MAIN(TstVosImageCacheRules)
#include "tst_vosimagecacherules.moc"
