#include "vosimagecache.h"

#include "guisingleton_p.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
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

namespace {

GuiSingleton<VosImageCache> g_instance;

bool IsWebUrl(const QUrl &url)
{
    // QUrl keeps schemes in lower case, so "HTTP://" passes too. A URL without a
    // host ("http://", "http:/x") has nowhere to go.
    const QString scheme = url.scheme();
    return url.isValid() && (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        && !url.host().isEmpty();
}

// Strict parsing, so that a malformed address fails here instead of being
// "corrected" by QUrl into a request for something else.
QUrl ParseWebUrl(const QString &text)
{
    if (text.size() > VosImageCache::MaxUrlLength)
        return QUrl();
    const QUrl url(text, QUrl::StrictMode);
    return IsWebUrl(url) ? url : QUrl();
}

bool IsRedirect(int status)
{
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

bool DecodesAsIcon(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    // The format comes from the bytes, never from the server's Content-Type.
    QImageReader reader(&buffer);
    // Look at the header before decoding: a few bytes can announce a picture whose
    // pixels would not fit in memory.
    const QSize size = reader.size();
    if (!size.isValid() || size.isEmpty() || size.width() > VosImageCache::MaxImageDimension
        || size.height() > VosImageCache::MaxImageDimension) {
        return false;
    }
    const QImage image = reader.read();
    return !image.isNull() && image.width() <= VosImageCache::MaxImageDimension
        && image.height() <= VosImageCache::MaxImageDimension;
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
        QByteArray body;
        int redirects = 0;
        int waiters = 1;
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
        return Directory() + QLatin1Char('/') + QString::fromLatin1(hash) + QStringLiteral(".img");
    }

    QString CopyResource(const QString &resource, bool forceRefresh) const
    {
        const QString target = CachePathFor(resource);
        if (!forceRefresh && QFileInfo(target).isFile())
            return target;
        QFile source(resource);
        if (!source.open(QIODevice::ReadOnly))
            return QString();
        return WriteAtomically(target, source.readAll()) ? target : QString();
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
        // http(s) and the hops are counted against our own limit.
        request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
        // An icon request neither sends nor keeps cookies.
        request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
        request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);

        dl->DropReply();
        dl->body.clear();
        dl->current = address;
        QNetworkReply *reply = network.get(request);
        dl->reply = reply;
        QObject::connect(reply, &QNetworkReply::metaDataChanged, &dl->deadline, [this, url, reply] {
            // Refuse as soon as the server announces too much.
            if (reply->header(QNetworkRequest::ContentLengthHeader).toLongLong() > MaxImageBytes)
                Finish(url, QString());
        });
        QObject::connect(reply, &QNetworkReply::readyRead, &dl->deadline, [this, url, dl] { Receive(url, dl); });
        QObject::connect(reply, &QNetworkReply::finished, &dl->deadline, [this, url, dl] { Complete(url, dl); });
    }

    // Returns false when the download has been given up.
    bool Receive(const QString &url, Download *dl)
    {
        // One byte past the limit is enough to know the icon is too large, so never
        // read further than that.
        dl->body += dl->reply->read(MaxImageBytes + 1 - dl->body.size());
        if (dl->body.size() <= MaxImageBytes)
            return true;
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
            if (location.isEmpty() || !IsWebUrl(next) || ++dl->redirects > MaxRedirects)
                Finish(url, QString());
            else
                Get(url, dl, next);
            return;
        }
        const bool stored = reply->error() == QNetworkReply::NoError && status >= 200 && status < 300
            && DecodesAsIcon(dl->body) && WriteAtomically(dl->target, dl->body);
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
    d->cacheDirectory = directory;
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

void VosImageCache::RequestImage(const QString &url, bool forceRefresh)
{
    if (url.startsWith(QLatin1String(":/"))) {
        d->Answer(url, d->CopyResource(url, forceRefresh));
        return;
    }
    if (url.startsWith(QLatin1String("file:"), Qt::CaseInsensitive)) {
        const QString path = QUrl(url).toLocalFile();
        d->Answer(url, !path.isEmpty() && QFileInfo(path).isFile() ? path : QString());
        return;
    }
    if (QFileInfo(url).isAbsolute()) {
        d->Answer(url, QFileInfo(url).isFile() ? url : QString());
        return;
    }
    const QUrl address = ParseWebUrl(url);
    if (!address.isValid()) {
        d->Answer(url, QString());
        return;
    }
    const QString target = d->CachePathFor(url);
    if (!forceRefresh && QFileInfo(target).isFile()) {
        d->Answer(url, target);
        return;
    }
    d->Fetch(url, address, target);
}
