// SPDX-License-Identifier: MIT
// libFuzzer harness for the stored gesture map decoder. Built with clang outside the
// CMake targets (see CMakeLists.txt), against QtCore only.
//
// Every input is read both as an image and as stored text. Besides crashes and
// sanitizer reports, the harness stops on any disagreement with a plain byte-by-byte
// reading of the format, and on a decoded map that does not survive a round trip.

#include "gesturemapcodec_p.h"

#include <QByteArray>
#include <QMap>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

quint32 Be32(const QByteArray &bytes, int at)
{
    return quint32(quint8(bytes[at])) << 24 | quint32(quint8(bytes[at + 1])) << 16
        | quint32(quint8(bytes[at + 2])) << 8 | quint32(quint8(bytes[at + 3]));
}

// The format, read the obvious way: a count, then that many (key, value) pairs; too
// few bytes mean no map; a key seen again replaces the earlier entry.
QMap<int, int> ReferenceDecode(const QByteArray &bytes)
{
    QMap<int, int> map;
    if (bytes.size() < 4)
        return map;
    const quint64 count = Be32(bytes, 0);
    if (count * 8 > quint64(bytes.size() - 4))
        return map;
    for (quint64 i = 0; i < count; ++i) {
        const int at = 4 + int(i) * 8;
        map.insert(qint32(Be32(bytes, at)), qint32(Be32(bytes, at + 4)));
    }
    return map;
}

void Check(bool condition)
{
    if (!condition)
        std::abort();
}

void CheckImage(const QByteArray &bytes)
{
    const QMap<int, int> map = GestureMapCodec::Decode(bytes);
    Check(map == ReferenceDecode(bytes));
    const QByteArray again = GestureMapCodec::Encode(map);
    Check(again.size() == 4 + 8 * map.size());
    Check(GestureMapCodec::Decode(again) == map);
    Check(GestureMapCodec::DecodeText(GestureMapCodec::EncodeText(map)) == map);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size > 1 << 20)
        return 0;
    const QByteArray bytes(reinterpret_cast<const char *>(data), int(size));
    CheckImage(bytes);

    const QString text = QString::fromUtf8(bytes);
    const QMap<int, int> fromText = GestureMapCodec::DecodeText(text);
    Check(fromText == ReferenceDecode(QByteArray::fromBase64(text.toUtf8())));
    return 0;
}
