// SPDX-License-Identifier: MIT
#include "boundedinflater_p.h"

#include <zlib.h>

#include <algorithm>

struct BoundedInflater::Stream
{
    z_stream z{};
    bool ready = false;
};

BoundedInflater::BoundedInflater()
    : m_stream(std::make_unique<Stream>())
{
    // 32 + MAX_WBITS: gzip or zlib, told apart by the header.
    m_stream->ready = inflateInit2(&m_stream->z, 32 + MAX_WBITS) == Z_OK;
}

BoundedInflater::~BoundedInflater()
{
    if (m_stream->ready)
        inflateEnd(&m_stream->z);
}

bool BoundedInflater::IsDone() const
{
    return m_done;
}

BoundedInflater::Result BoundedInflater::Feed(const QByteArray &input, QByteArray &output, qint64 room)
{
    if (m_failed || !m_stream->ready)
        return Result::Failed;
    if (m_done)
        return Result::Done;
    z_stream &z = m_stream->z;
    z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(input.constData()));
    z.avail_in = uInt(input.size());
    char chunk[16384];
    while (z.avail_in > 0 || z.avail_out == 0) {
        z.next_out = reinterpret_cast<Bytef *>(chunk);
        z.avail_out = sizeof chunk;
        const int status = inflate(&z, Z_NO_FLUSH);
        const qint64 produced = qint64(sizeof chunk) - z.avail_out;
        if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR) {
            m_failed = true;
            return Result::Failed;
        }
        if (produced > room) {
            // Past what the caller accepts: stop before holding any more of it.
            m_failed = true;
            return Result::Failed;
        }
        output.append(chunk, int(produced));
        room -= produced;
        if (status == Z_STREAM_END) {
            m_done = true;
            return Result::Done;
        }
        if (status == Z_BUF_ERROR || (produced == 0 && z.avail_in == 0))
            break;
    }
    return Result::More;
}
