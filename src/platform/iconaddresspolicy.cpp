// SPDX-License-Identifier: MIT
#include "iconaddresspolicy_p.h"

#include <QFileInfo>
#include <QHostAddress>
#include <QPair>

namespace {

bool IsPrivateAddress(const QHostAddress &address)
{
    bool isV4 = false;
    const quint32 v4 = address.toIPv4Address(&isV4); // also unwraps ::ffff:a.b.c.d
    if (isV4) {
        const QHostAddress plain(v4);
        static const QPair<QHostAddress, int> privateV4[] = {
            QHostAddress::parseSubnet(QStringLiteral("0.0.0.0/8")),
            QHostAddress::parseSubnet(QStringLiteral("10.0.0.0/8")),
            QHostAddress::parseSubnet(QStringLiteral("100.64.0.0/10")),
            QHostAddress::parseSubnet(QStringLiteral("127.0.0.0/8")),
            QHostAddress::parseSubnet(QStringLiteral("169.254.0.0/16")),
            QHostAddress::parseSubnet(QStringLiteral("172.16.0.0/12")),
            QHostAddress::parseSubnet(QStringLiteral("192.168.0.0/16")),
            QHostAddress::parseSubnet(QStringLiteral("224.0.0.0/3")), // multicast, reserved, broadcast
        };
        for (const auto &subnet : privateV4) {
            if (plain.isInSubnet(subnet))
                return true;
        }
        return false;
    }
    return address.isLoopback() || address.isLinkLocal() || address.isUniqueLocalUnicast()
        || address.isSiteLocal() || address.isMulticast() || address == QHostAddress(QHostAddress::AnyIPv6);
}

} // namespace

bool IconAddressPolicy::IsWebUrl(const QUrl &url)
{
    // QUrl keeps schemes in lower case, so "HTTP://" passes too. A URL without a
    // host ("http://", "http:/x") has nowhere to go.
    const QString scheme = url.scheme();
    return url.isValid() && (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        && !url.host().isEmpty();
}

QUrl IconAddressPolicy::ParseWebUrl(const QString &text)
{
    // Strict parsing, so that a malformed address fails here instead of being
    // "corrected" by QUrl into a request for something else.
    if (text.size() > MaxUrlLength)
        return QUrl();
    const QUrl url(text, QUrl::StrictMode);
    return IsWebUrl(url) ? url : QUrl();
}

QString IconAddressPolicy::LocalFile(const QString &text)
{
    QString path;
    if (text.startsWith(QLatin1String("file:"), Qt::CaseInsensitive)) {
        const QUrl url(text);
        // file://host/share names a file on another machine: looking it up would
        // block on the network and hand the user's credentials to that host.
        if (!url.isLocalFile() || !url.host().isEmpty())
            return QString();
        path = url.toLocalFile();
    } else {
        path = text;
    }
    // The same share written as a path (also what file:////host/share gives).
    if (path.startsWith(QLatin1String("//")) || path.startsWith(QLatin1String("\\\\"))
        || path.startsWith(QLatin1String("/\\")) || path.startsWith(QLatin1String("\\/")))
        return QString();
    if (path.isEmpty() || !QFileInfo(path).isAbsolute())
        return QString();
    return path;
}

bool IconAddressPolicy::IsRedirectAllowed(const QUrl &from, const QUrl &to)
{
    if (!IsWebUrl(to))
        return false;
    if (from.scheme() == QLatin1String("https") && to.scheme() != QLatin1String("https"))
        return false;
    return !(!IsPrivateHost(from.host()) && IsPrivateHost(to.host()));
}

bool IconAddressPolicy::IsPrivateHost(const QString &host)
{
    QString name = host.toLower();
    if (name.endsWith(QLatin1Char('.')))
        name.chop(1);
    if (name.startsWith(QLatin1Char('[')) && name.endsWith(QLatin1Char(']')))
        name = name.mid(1, name.size() - 2);
    const QHostAddress address(name);
    if (!address.isNull())
        return IsPrivateAddress(address);
    if (name.isEmpty() || !name.contains(QLatin1Char('.')))
        return true;
    for (const char *suffix : {".localhost", ".local", ".internal", ".home.arpa", ".lan"}) {
        if (name.endsWith(QLatin1String(suffix)))
            return true;
    }
    return false;
}
