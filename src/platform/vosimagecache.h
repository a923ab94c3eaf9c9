#pragma once

#include "keltabcontainer_export.h"

#include <QObject>
#include <QString>

/**
 * Process-wide cache that turns a tab's icon address into a local image file.
 *
 * RequestImage() always answers with SigRequestImageFinished, and always after it
 * has returned (never from inside the call), so a receiver connected after the call
 * still hears the answer:
 * - an existing local path, or a file: URL of an existing file, resolves to itself;
 * - a resource path (":/...") is written once into the cache directory and that file
 *   is returned;
 * - any other address fails.
 *
 * GUI thread only.
 */
class KELTABCONTAINER_EXPORT VosImageCache : public QObject
{
    Q_OBJECT
public:
    static VosImageCache *Instance();
    /** Destroys the instance; requests in flight are dropped without an answer. */
    static void ReleaseInstance();

    /**
     * Asks for the local file of @p url.
     * @param forceRefresh true: ignore a cached copy and fetch it again.
     */
    void RequestImage(const QString &url, bool forceRefresh);

    /** Where copies are kept; missing folders are created on first use. */
    void SetCacheDirectory(const QString &directory);
    QString CacheDirectory() const;

Q_SIGNALS:
    /**
     * The answer to RequestImage(): @p url exactly as asked, and on success the local
     * file's path. @note Never emitted from inside RequestImage().
     */
    void SigRequestImageFinished(bool success, const QString &url, const QString &localPath);

private:
    VosImageCache();
    ~VosImageCache() override;

    class Private;
    Private *const d;
};
