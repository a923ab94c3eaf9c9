// SPDX-License-Identifier: MIT
#include "vosimagecache.h"

#include "boundedinflater_p.h"
#include "guisingleton_p.h"
#include "iconaddresspolicy_p.h"
#include "icondecoder_p.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMetaObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QPointer>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>

#include <map>

static_assert(VosImageCache::MaxImageDimension == IconDecoder::MaxDimension, "one limit for icons");
static_assert(VosImageCache::MaxUrlLength == IconAddressPolicy::MaxUrlLength, "one limit for addresses");

namespace {

GuiSingleton<VosImageCache> g_instance;

// What Qt may hold of a reply ahead of us: the body is read, and decoded, as it
// arrives, so nothing larger than this waits in memory unseen.
constexpr qint64 kReadBufferBytes = 64 * 1024;

// Files of the cache end so; nothing else in the directory is ever counted or removed.
const QString kFileSuffix = QStringLiteral(".img");

bool IsRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

// A file in the cache is either complete or absent: QSaveFile writes beside the
// target and renames over it only once everything is on disk.
bool WriteAtomically(const QString &target, const QByteArray &bytes)
{
    if (!QDir().mkpath(QFileInfo(target).absolutePath()))
        return false;
    QSaveFile file(target);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return false; // an uncommitted QSaveFile removes its temporary file
    QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
    return true;
}

QByteArray ReadFile(const QString &path, qint64 limit)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > limit)
        return QByteArray();
    return file.readAll();
}

} // namespace

class VosImageCache::Private
{
public:
    // One download, shared by every request for the same address while it runs.
    struct Download
    {
        ~Download() { DropReply(); }

        void DropReply()
        {
            if (!reply)
                return;
            // Disconnect before aborting: abort() reports finished() at once, and
            // nobody must act on it any more.
            QObject::disconnect(reply, nullptr, &deadline, nullptr);
            reply->abort();
            reply->deleteLater();
            reply = nullptr;
        }

        // Bounds the whole download, redirects included. Also the context of every
        // connection made for this download, so that they all end with it.
        QTimer deadline;
        // Owned by the network manager; released through DropReply().
        QPointer<QNetworkReply> reply;
        QUrl current;
        QString target;
        QByteArray body;          // decoded bytes
        qint64 received = 0;      // bytes as they came over the wire
        // Set when the server compressed the body; it is undone here, not by Qt, so
        // that the size limit holds for what the body decodes to while it streams.
        std::unique_ptr<BoundedInflater> inflater;
        bool unusable = false;    // an encoding we do not take
        int redirects = 0;
        int waiters = 1;
    };

    // A decoded icon kept for Image().
    struct Held
    {
        QImage image;
        qint64 cost = 0;
        quint64 lastUse = 0;
    };

    // A file of the cache directory, as the disk budget sees it.
    struct Stored
    {
        qint64 size = 0;
        qint64 lastUse = 0; // milliseconds since the epoch: the file's modification time
    };

    explicit Private(VosImageCache *owner)
        : q(owner)
    {
    }

    ~Private()
    {
        // Abort while the manager still exists; nothing is answered any more.
        downloads.clear();
    }

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
        return Directory() + QLatin1Char('/') + QString::fromLatin1(hash) + kFileSuffix;
    }

    // --- memory budget ---------------------------------------------------------

    void Hold(const QString &url, const QImage &image)
    {
        Forget(url);
        const qint64 cost = image.sizeInBytes();
        if (image.isNull() || cost > memoryBudget)
            return;
        held.insert(url, Held{image, cost, ++useCounter});
        memoryUsage += cost;
        TrimMemory();
    }

    void Forget(const QString &url)
    {
        const auto found = held.find(url);
        if (found == held.end())
            return;
        memoryUsage -= found->cost;
        held.erase(found);
    }

    void TrimMemory()
    {
        while (memoryUsage > memoryBudget && !held.isEmpty()) {
            auto oldest = held.begin();
            for (auto it = held.begin(); it != held.end(); ++it) {
                if (it->lastUse < oldest->lastUse)
                    oldest = it;
            }
            memoryUsage -= oldest->cost;
            held.erase(oldest);
        }
    }

    // --- disk budget -------------------------------------------------------------

    // Learns what the directory holds on first need, from the files themselves, so
    // that what earlier sessions left counts too.
    void ScanDisk()
    {
        if (diskScanned)
            return;
        diskScanned = true;
        stored.clear();
        diskUsage = 0;
        const QFileInfoList files = QDir(Directory()).entryInfoList({QLatin1Char('*') + kFileSuffix}, QDir::Files);
        for (const QFileInfo &file : files) {
            const qint64 modified = file.lastModified().toMSecsSinceEpoch();
            stored.insert(file.fileName(), Stored{file.size(), modified});
            lastUseStamp = qMax(lastUseStamp, modified);
            diskUsage += file.size();
        }
    }

    void NoteWritten(const QString &path)
    {
        ScanDisk();
        const QFileInfo file(path);
        const QString name = file.fileName();
        diskUsage -= stored.value(name).size;
        stored.insert(name, Stored{file.size(), NextUse()});
        diskUsage += file.size();
        TrimDisk(name);
    }

    // A file served again is in use: it moves to the back of the line.
    void NoteServed(const QString &path)
    {
        ScanDisk();
        const QString name = QFileInfo(path).fileName();
        const auto found = stored.find(name);
        const qint64 now = NextUse();
        if (found != stored.end())
            found->lastUse = now;
        // Kept on the file too, for the next session's order.
        QFile file(path);
        if (file.open(QIODevice::ReadWrite))
            file.setFileTime(QDateTime::fromMSecsSinceEpoch(now), QFileDevice::FileModificationTime);
    }

    // The time of a use, later than every use before it even within one
    // millisecond, so that the order of uses is never a tie.
    qint64 NextUse()
    {
        lastUseStamp = qMax(QDateTime::currentMSecsSinceEpoch(), lastUseStamp + 1);
        return lastUseStamp;
    }

    void TrimDisk(const QString &keep)
    {
        const QString directory = Directory();
        while (diskUsage > diskBudget) {
            auto oldest = stored.end();
            for (auto it = stored.begin(); it != stored.end(); ++it) {
                if (it.key() != keep && (oldest == stored.end() || it->lastUse < oldest->lastUse))
                    oldest = it;
            }
            if (oldest == stored.end())
                return;
            QFile::remove(directory + QLatin1Char('/') + oldest.key());
            diskUsage -= oldest->size;
            stored.erase(oldest);
        }
    }

    void ForgetDisk()
    {
        diskScanned = false;
        stored.clear();
        diskUsage = 0;
    }

    // --- answers -----------------------------------------------------------------

    QString CopyResource(const QString &resource, bool forceRefresh)
    {
        const QString target = CachePathFor(resource);
        if (!forceRefresh && QFileInfo(target).isFile()) {
            NoteServed(target);
            return target;
        }
        QFile source(resource);
        if (!source.open(QIODevice::ReadOnly) || !WriteAtomically(target, source.readAll()))
            return QString();
        NoteWritten(target);
        return target;
    }

    // Answers from the event loop: callers connect after asking, and a receiver may
    // release the cache from its slot; queued answers die with the instance.
    void Answer(const QString &url, const QString &localPath)
    {
        QMetaObject::invokeMethod(q, [q = q, url, localPath] {
            Q_EMIT q->SigRequestImageFinished(!localPath.isEmpty(), url, localPath);
        }, Qt::QueuedConnection);
    }

    void Fetch(const QString &url, const QUrl &address, const QString &target)
    {
        const auto running = downloads.find(url);
        if (running != downloads.end()) {
            ++running->second->waiters;
            return;
        }
        auto download = std::make_unique<Download>();
        Download *dl = download.get();
        dl->target = target;
        dl->deadline.setSingleShot(true);
        QObject::connect(&dl->deadline, &QTimer::timeout, &dl->deadline, [this, url] { Finish(url, QString()); });
        dl->deadline.start(timeoutMs);
        downloads.emplace(url, std::move(download));
        Get(url, dl, address);
    }

    void Get(const QString &url, Download *dl, const QUrl &address)
    {
        QNetworkRequest request(address);
        // Redirects are checked here rather than by Qt, so that each hop is held to
        // the address rules and counted against our own limit.
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        // An icon request neither sends nor keeps cookies.
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
        // Asked for by us, so Qt leaves compressed bodies alone: Receive() undoes the
        // compression itself, bounded, instead of Qt inflating all of it up front.
        request.setRawHeader("Accept-Encoding", "gzip, deflate");

        dl->DropReply();
        dl->body.clear();
        dl->received = 0;
        dl->inflater.reset();
        dl->unusable = false;
        dl->current = address;
        QNetworkReply *reply = network.get(request);
        reply->setReadBufferSize(kReadBufferBytes);
        dl->reply = reply;
        QObject::connect(reply, &QNetworkReply::metaDataChanged, &dl->deadline, [this, url, dl, reply] {
            // Refuse as soon as the server announces too much.
            if (reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > MaxImageBytes) {
                Finish(url, QString());
                return;
            }
            const QByteArray encoding = reply->rawHeader("Content-Encoding").trimmed().toLower();
            if (encoding == "gzip" || encoding == "x-gzip" || encoding == "deflate")
                dl->inflater = std::make_unique<BoundedInflater>();
            else if (!encoding.isEmpty() && encoding != "identity")
                dl->unusable = true;
        });
        QObject::connect(reply, &QNetworkReply::readyRead, &dl->deadline, [this, url, dl] { Receive(url, dl); });
        QObject::connect(reply, &QNetworkReply::finished, &dl->deadline, [this, url, dl] { Complete(url, dl); });
    }

    // Returns false when the download has been given up.
    bool Receive(const QString &url, Download *dl)
    {
        while (dl->reply && dl->reply->bytesAvailable() > 0) {
            // One byte past the limit is enough to know the icon is too large, so
            // never read or decode further than that.
            const QByteArray chunk = dl->reply->read(kReadBufferBytes);
            dl->received += chunk.size();
            const qint64 room = MaxImageBytes + 1 - dl->body.size();
            if (!dl->inflater)
                dl->body += chunk.left(int(room));
            else if (dl->inflater->Feed(chunk, dl->body, room) == BoundedInflater::Result::Failed)
                return Fail(url);
            if (dl->body.size() > MaxImageBytes || dl->received > MaxImageBytes)
                return Fail(url);
        }
        return true;
    }

    bool Fail(const QString &url)
    {
        Finish(url, QString());
        return false;
    }

    void Complete(const QString &url, Download *dl)
    {
        if (!Receive(url, dl))
            return;
        QNetworkReply *reply = dl->reply;
        const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        if (IsRedirect(status)) {
            const QUrl location = QUrl::fromEncoded(reply->rawHeader("Location"), QUrl::StrictMode);
            const QUrl next = dl->current.resolved(location);
            if (location.isEmpty() || !IconAddressPolicy::IsRedirectAllowed(dl->current, next)
                || ++dl->redirects > MaxRedirects)
                Finish(url, QString());
            else
                Get(url, dl, next);
            return;
        }
        const bool complete = !dl->unusable && (!dl->inflater || dl->inflater->IsDone());
        const bool ok = reply->error() == QNetworkReply::NoError && status >= 200 && status < 300 && complete;
        const QImage image = ok ? IconDecoder::Decode(dl->body) : QImage();
        const bool stored = !image.isNull() && WriteAtomically(dl->target, dl->body);
        if (stored) {
            NoteWritten(dl->target);
            Hold(url, image);
        }
        Finish(url, stored ? dl->target : QString());
    }

    // Ends the download of @p url and answers everyone who asked for it.
    void Finish(const QString &url, const QString &localPath)
    {
        const auto found = downloads.find(url);
        if (found == downloads.end())
            return;
        const int waiters = found->second->waiters;
        downloads.erase(found);
        for (int i = 0; i < waiters; ++i)
            Answer(url, localPath);
    }

    VosImageCache *const q;
    QString cacheDirectory;
    int timeoutMs = DefaultTimeoutMs;
    QNetworkAccessManager network;
    // Keyed by the address exactly as asked, which is also what the answers carry.
    std::map<QString, std::unique_ptr<Download>> downloads;

    qint64 memoryBudget = DefaultMemoryBudget;
    qint64 memoryUsage = 0;
    quint64 useCounter = 0;
    QHash<QString, Held> held;

    qint64 diskBudget = DefaultDiskBudget;
    qint64 diskUsage = 0;
    bool diskScanned = false;
    qint64 lastUseStamp = 0;
    QHash<QString, Stored> stored; // by file name in the cache directory
};

VosImageCache::VosImageCache()
    : d(std::make_unique<Private>(this))
{
}

VosImageCache::~VosImageCache() = default;

VosImageCache *VosImageCache::Instance()
{
    return g_instance.Instance("VosImageCache", [] { return new VosImageCache; });
}

void VosImageCache::ReleaseInstance()
{
    g_instance.Release("VosImageCache", [](VosImageCache *instance) { delete instance; });
}

void VosImageCache::SetCacheDirectory(const QString &directory)
{
    if (directory == d->cacheDirectory)
        return;
    d->cacheDirectory = directory;
    d->ForgetDisk();
}

QString VosImageCache::CacheDirectory() const
{
    return d->Directory();
}

void VosImageCache::SetTimeoutMs(int ms)
{
    d->timeoutMs = ms > 0 ? ms : DefaultTimeoutMs;
}

int VosImageCache::TimeoutMs() const
{
    return d->timeoutMs;
}

QImage VosImageCache::Image(const QString &url)
{
    const auto found = d->held.find(url);
    if (found != d->held.end()) {
        found->lastUse = ++d->useCounter;
        return found->image;
    }
    // Not held (never, or trimmed): decode again from where the answer pointed, by
    // the same rules as a download.
    QString path = IconAddressPolicy::LocalFile(url);
    if (path.isEmpty())
        path = d->CachePathFor(url);
    const QImage image = IconDecoder::Decode(ReadFile(path, MaxImageBytes));
    if (!image.isNull())
        d->Hold(url, image);
    return image;
}

void VosImageCache::SetMemoryBudget(qint64 bytes)
{
    d->memoryBudget = bytes > 0 ? bytes : DefaultMemoryBudget;
    d->TrimMemory();
}

qint64 VosImageCache::MemoryBudget() const
{
    return d->memoryBudget;
}

qint64 VosImageCache::MemoryUsage() const
{
    return d->memoryUsage;
}

void VosImageCache::SetDiskBudget(qint64 bytes)
{
    d->diskBudget = bytes > 0 ? bytes : DefaultDiskBudget;
    d->ScanDisk();
    d->TrimDisk(QString());
}

qint64 VosImageCache::DiskBudget() const
{
    return d->diskBudget;
}

qint64 VosImageCache::DiskUsage() const
{
    d->ScanDisk();
    return d->diskUsage;
}

void VosImageCache::RequestImage(const QString &url, bool forceRefresh)
{
    if (url.startsWith(QLatin1String(":/"))) {
        d->Answer(url, d->CopyResource(url, forceRefresh));
        return;
    }
    if (url.startsWith(QLatin1String("file:"), Qt::CaseInsensitive) || QFileInfo(url).isAbsolute()) {
        // The address is checked before anything looks at the file system: a file
        // on a network share must not be touched at all.
        const QString path = IconAddressPolicy::LocalFile(url);
        d->Answer(url, !path.isEmpty() && QFileInfo(path).isFile() ? path : QString());
        return;
    }
    const QUrl address = IconAddressPolicy::ParseWebUrl(url);
    if (!address.isValid()) {
        d->Answer(url, QString());
        return;
    }
    const QString target = d->CachePathFor(url);
    if (!forceRefresh && QFileInfo(target).isFile()) {
        d->NoteServed(target);
        d->Answer(url, target);
        return;
    }
    d->Fetch(url, address, target);
}
