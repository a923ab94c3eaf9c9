// SPDX-License-Identifier: MIT
#pragma once

// Shared by the icon cache's tests: a small HTTP(S) server on 127.0.0.1 and helpers
// to read the cache's answers.

#include "vosimagecache.h"

#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QHostAddress>
#include <QImage>
#include <QSignalSpy>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <QUrlQuery>

namespace IconTest {

inline constexpr qint64 OneMiB = 1024 * 1024;

inline QByteArray MakePng(int width = 16, int height = 16)
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
inline QByteArray PaddedPng(qint64 size)
{
    QByteArray bytes = MakePng();
    bytes.append(QByteArray(int(size - bytes.size()), '\0'));
    return bytes;
}

// Accepts plain connections, or TLS ones once it has a certificate.
class TcpOrTlsServer : public QTcpServer
{
public:
    QSslCertificate certificate;
    QSslKey key;

protected:
    void incomingConnection(qintptr descriptor) override
    {
        if (certificate.isNull()) {
            QTcpServer::incomingConnection(descriptor);
            return;
        }
        auto *socket = new QSslSocket(this);
        if (!socket->setSocketDescriptor(descriptor)) {
            delete socket;
            return;
        }
        socket->setLocalCertificate(certificate);
        socket->setPrivateKey(key);
        socket->startServerEncryption();
        addPendingConnection(socket);
    }
};

/*
 * A tiny HTTP/1.1 server on 127.0.0.1 that answers every request according to its
 * path, closes each connection after answering and counts what it was asked for.
 * It also serves as an HTTP proxy: a request for "http://host/path" is answered by
 * its path, and the host is noted. With a certificate it speaks HTTPS.
 */
class IconServer : public QObject
{
public:
    struct Response
    {
        QByteArray status;
        QByteArray body;
        QByteArray headers; // each line ending in \r\n
    };

    explicit IconServer(QObject *parent = nullptr)
        : QObject(parent)
    {
        connect(&m_server, &QTcpServer::newConnection, this, &IconServer::Accept);
    }

    bool Listen() { return m_server.listen(QHostAddress::LocalHost, 0); }

    bool ListenTls(const QSslCertificate &certificate, const QSslKey &key)
    {
        m_server.certificate = certificate;
        m_server.key = key;
        return Listen();
    }

    quint16 Port() const { return m_server.serverPort(); }

    // Answers @p path with @p response from now on.
    void SetResponse(const QByteArray &path, const Response &response) { m_responses.insert(path, response); }

    // Hosts named in requests that came as to a proxy, in order.
    QList<QByteArray> ProxiedHosts() const { return m_proxiedHosts; }

    // A valid icon on disk, for a redirect that must not be followed to it.
    void SetLocalIcon(const QString &path) { m_localIcon = path; }

    QString Url(const QString &path) const
    {
        return QStringLiteral("%1://127.0.0.1:%2%3")
            .arg(m_server.certificate.isNull() ? QStringLiteral("http") : QStringLiteral("https"))
            .arg(m_server.serverPort())
            .arg(path);
    }

    void Reset()
    {
        m_requests.clear();
        m_proxiedHosts.clear();
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
        QByteArray path = request.left(request.indexOf("\r\n")).split(' ').value(1);
        if (path.startsWith("http://")) {
            // Absolute form: asked as a proxy.
            const QUrl url = QUrl::fromEncoded(path);
            m_proxiedHosts.append(url.host().toUtf8());
            path = url.path(QUrl::FullyEncoded).toUtf8();
            if (url.hasQuery())
                path += '?' + url.query(QUrl::FullyEncoded).toUtf8();
        }
        m_requests.append(path);
        Answer(socket, path);
    }

    void Answer(QTcpSocket *socket, const QByteArray &path)
    {
        const auto custom = m_responses.constFind(path);
        if (custom != m_responses.constEnd()) {
            Send(socket, custom->status, custom->body, Announce::Yes, custom->headers);
        } else if (path.startsWith("/redirect?to=")) {
            // Anywhere the test says.
            Redirect(socket, "302 Found", QUrl::fromPercentEncoding(path.mid(13)).toUtf8());
        } else if (path.startsWith("/icon")) {
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

    TcpOrTlsServer m_server;
    QHash<QByteArray, Response> m_responses;
    QList<QByteArray> m_proxiedHosts;
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

inline Answer AnswerAt(const QSignalSpy &spy, int index)
{
    const QList<QVariant> arguments = spy.at(index);
    return {arguments.at(0).toBool(), arguments.at(1).toString(), arguments.at(2).toString()};
}

/**
 * Requests @p url from @p cache (@p reload: fetched again) and waits for its answer: exactly one, and never before
 * RequestImage() has returned. Empty on success, else what went wrong.
 */
inline QString RequestOnce(VosImageCache *cache, const QString &url, Answer *answer, bool reload = false,
                           int timeoutMs = 5000)
{
    QSignalSpy spy(cache, &VosImageCache::SigRequestImageFinished);
    cache->RequestImage(url, reload);
    if (spy.count() != 0)
        return QStringLiteral("answered before RequestImage() returned");
    if (!QTest::qWaitFor([&spy] { return spy.count() > 0; }, timeoutMs))
        return QStringLiteral("no answer within %1 ms").arg(timeoutMs);
    QCoreApplication::processEvents(); // a second answer would come in the same turn
    if (spy.count() != 1)
        return QStringLiteral("%1 answers").arg(spy.count());
    *answer = AnswerAt(spy, 0);
    return QString();
}

inline QByteArray Contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace IconTest

using namespace IconTest;
