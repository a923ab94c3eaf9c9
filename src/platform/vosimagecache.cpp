#include "vosimagecache.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>
#include <QPointer>
#include <QStandardPaths>
#include <QUrl>

namespace {
VosImageCache *g_instance = nullptr;
}

class VosImageCache::Private
{
public:
    QString cacheDirectory;

    QString Directory() const
    {
        if (!cacheDirectory.isEmpty())
            return cacheDirectory;
        return QStandardPaths::writableLocation(QStandardPaths::CacheLocation)
            + QStringLiteral("/KelTabContainer/icons");
    }

    // Cached files are named from a hash of the address, never from its text, so an
    // address cannot choose where its bytes land.
    QString CachePathFor(const QString &url) const
    {
        const QByteArray hash = QCryptographicHash::hash(url.toUtf8(), QCryptographicHash::Sha256).toHex();
        return Directory() + QLatin1Char('/') + QString::fromLatin1(hash) + QStringLiteral(".img");
    }

    QString CopyResource(const QString &resource, bool forceRefresh) const
    {
        if (!QFileInfo(resource).isFile())
            return QString();
        const QString target = CachePathFor(resource);
        if (!forceRefresh && QFileInfo::exists(target))
            return target;
        if (!QDir().mkpath(Directory()))
            return QString();
        QFile::remove(target);
        if (!QFile::copy(resource, target))
            return QString();
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
        return target;
    }
};

VosImageCache::VosImageCache()
    : d(new Private)
{
}

VosImageCache::~VosImageCache()
{
    delete d;
}

VosImageCache *VosImageCache::Instance()
{
    if (!g_instance)
        g_instance = new VosImageCache;
    return g_instance;
}

void VosImageCache::ReleaseInstance()
{
    delete g_instance;
    g_instance = nullptr;
}

void VosImageCache::SetCacheDirectory(const QString &directory)
{
    d->cacheDirectory = directory;
}

QString VosImageCache::CacheDirectory() const
{
    return d->Directory();
}

void VosImageCache::RequestImage(const QString &url, bool forceRefresh)
{
    QString local;
    if (url.startsWith(QLatin1String(":/"))) {
        local = d->CopyResource(url, forceRefresh);
    } else if (url.startsWith(QLatin1String("file:"), Qt::CaseInsensitive)) {
        const QString path = QUrl(url).toLocalFile();
        if (!path.isEmpty() && QFileInfo(path).isFile())
            local = path;
    } else if (!url.isEmpty() && QFileInfo(url).isAbsolute() && QFileInfo(url).isFile()) {
        local = url;
    }
    // Answer from the event loop: callers connect after asking.
    const bool success = !local.isEmpty();
    QMetaObject::invokeMethod(this, [this, success, url, local] {
        Q_EMIT SigRequestImageFinished(success, url, local);
    }, Qt::QueuedConnection);
}
