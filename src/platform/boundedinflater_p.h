// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library: decoding of compressed HTTP bodies, for the icon cache.

#include <QByteArray>

#include <memory>

/**
 * Inflates a gzip or zlib ("deflate") stream piece by piece as it arrives, never
 * producing more output than the caller allows: a few kilobytes that announce
 * gigabytes cost no more than the allowance.
 */
class BoundedInflater
{
public:
    enum class Result { More, Done, Failed };

    BoundedInflater();
    ~BoundedInflater();
    BoundedInflater(const BoundedInflater &) = delete;
    BoundedInflater &operator=(const BoundedInflater &) = delete;

    /**
     * Inflates @p input, appending at most @p room bytes to @p output.
     * @return More while the stream goes on, Done at its end (input past the end is
     * ignored), Failed for bytes that are not a gzip or zlib stream, or when the
     * output would pass @p room (the caller's limit was reached).
     */
    Result Feed(const QByteArray &input, QByteArray &output, qint64 room);
    /** @return true once the end of the stream was seen. */
    bool IsDone() const;

private:
    struct Stream;
    std::unique_ptr<Stream> m_stream;
    bool m_done = false;
    bool m_failed = false;
};
