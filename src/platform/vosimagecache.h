// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QImage>
#include <QObject>
#include <QString>

#include <memory>

/**
 * Process-wide cache that turns a tab's icon address into a local image file.
 *
 * RequestImage() always answers with SigRequestImageFinished, once per call and always
 * after it has returned (never from inside the call), so a receiver connected after the
 * call still hears the answer:
 * - an existing local path (absolute), or a file: URL of an existing file, resolves to
 *   itself; a file: URL with a host, or a path in the form of a network share
 *   ("//host/share", "\\host\share"), fails at once without any lookup;
 * - a resource path (":/...") is written once into the cache directory and that file
 *   is returned;
 * - an http or https URL is downloaded into the cache directory, or answered from the
 *   copy already there;
 * - any other address fails.
 *
 * A download is untrusted input and fails, leaving nothing in the cache, when:
 * - the server answers with an error, takes longer than TimeoutMs() in all, or
 *   redirects more than MaxRedirects times, to anything but http or https, from https
 *   to http, or from a public host to a private one (loopback, link-local, private
 *   networks, local names);
 * - the body, counted after undoing gzip or deflate as it streams in, passes
 *   MaxImageBytes;
 * - the bytes are not PNG, ICO, JPEG, GIF, BMP, WebP or SVG (told by their signature,
 *   and decoded only by that format's handler), an SVG refers to anything outside
 *   itself, or the header announces more than MaxImageDimension pixels a side.
 *
 * Two budgets bound what a long session keeps: decoded images held in memory for
 * Image() (least recently used out first, MemoryBudget()), and files in the cache
 * directory (least recently used out first, DiskBudget()).
 *
 * Files in the cache are named from a hash of the address, never from its text, and are
 * written atomically, so a half-written icon is never served. Failures are normal for
 * icons and are reported only through the signal, never as warnings.
 *
 * GUI thread only.
 * Instance() and ReleaseInstance() belong to the GUI thread like everything else:
 * called from another thread they print a warning and refuse (Instance() returns
 * null). ReleaseInstance() may be called from a destructor that it sets off.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT VosImageCache : public QObject
{
    Q_OBJECT
public:
    /** Largest icon body accepted from the network, in bytes (1 MiB). */
    static constexpr qint64 MaxImageBytes = 1024 * 1024;
    /** Largest width or height of a downloaded icon, in pixels. */
    static constexpr int MaxImageDimension = 1024;
    /** Most redirects followed for one download. */
    static constexpr int MaxRedirects = 5;
    /** Longest address accepted, in characters. */
    static constexpr int MaxUrlLength = 8192;
    /** Default time a download may take, redirects included, in milliseconds. */
    static constexpr int DefaultTimeoutMs = 15000;
    /** Default memory budget for decoded icons, in bytes (32 MiB). */
    static constexpr qint64 DefaultMemoryBudget = 32 * 1024 * 1024;
    /** Default disk budget for the cache directory, in bytes (64 MiB). */
    static constexpr qint64 DefaultDiskBudget = 64 * 1024 * 1024;

    /** The instance, created on first use with the default directory and timeout. */
    static VosImageCache *Instance();
    /**
     * Destroys the instance. Downloads in flight are aborted and requests not yet
     * answered are dropped: no SigRequestImageFinished follows. The next Instance()
     * starts afresh with the defaults.
     */
    static void ReleaseInstance();

    /**
     * Asks for the local file of @p url; the answer comes as SigRequestImageFinished.
     * Requests for an address whose download is already in flight share that download,
     * and each of them gets its own answer.
     * @param url the address, compared and reported exactly as given.
     * @param forceRefresh true: ignore a cached copy and fetch or copy it again.
     */
    void RequestImage(const QString &url, bool forceRefresh);

    /**
     * Where copies are kept; missing folders are created on first use. An empty
     * @p directory restores the default, a folder under QStandardPaths::CacheLocation.
     * Downloads already in flight keep the folder they started with.
     */
    void SetCacheDirectory(const QString &directory);
    /** @return the folder copies are kept in: the one set, or the default one. */
    QString CacheDirectory() const;

    /**
     * How long one download may take in all, redirects included, before it fails.
     * @p ms of 0 or less restores DefaultTimeoutMs. Applies to downloads started later.
     */
    void SetTimeoutMs(int ms);
    /** @return the time a download may take, in milliseconds (DefaultTimeoutMs unless set). */
    int TimeoutMs() const;

    /**
     * @return the decoded icon of @p url once a RequestImage() for it succeeded: from
     * memory, or decoded again from its file in the cache (or the local file it
     * resolved to). A null image when there is none.
     */
    QImage Image(const QString &url);

    /**
     * Bytes of decoded images kept in memory; when a new image would pass it, the
     * least recently used go first, and an image larger than the whole budget is not
     * kept. @p bytes of 0 or less restores DefaultMemoryBudget.
     */
    void SetMemoryBudget(qint64 bytes);
    /** @return the memory budget in bytes (DefaultMemoryBudget unless set). */
    qint64 MemoryBudget() const;
    /** @return the bytes of decoded images held in memory now. */
    qint64 MemoryUsage() const;

    /**
     * Bytes of files kept in the cache directory; when a new file passes it, the
     * files least recently written or served go first (never the one just written).
     * @p bytes of 0 or less restores DefaultDiskBudget. A smaller budget applies at
     * once.
     */
    void SetDiskBudget(qint64 bytes);
    /** @return the disk budget in bytes (DefaultDiskBudget unless set). */
    qint64 DiskBudget() const;
    /** @return the bytes of the cache's files in the cache directory now. */
    qint64 DiskUsage() const;

Q_SIGNALS:
    /**
     * The answer to one RequestImage() call: @p url exactly as asked, and on success the
     * local file's path (empty on failure).
     * @note Never emitted from inside RequestImage(), and never after ReleaseInstance()
     * for requests made before it.
     */
    void SigRequestImageFinished(bool success, const QString &url, const QString &localPath);

private:
    VosImageCache();
    ~VosImageCache() override;

    class Private;
    const std::unique_ptr<Private> d;
};
