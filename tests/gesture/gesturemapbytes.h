// SPDX-License-Identifier: MIT
#pragma once

// The stored gesture map's bytes, written out by hand: big-endian 32-bit words.

#include <QByteArray>
#include <QtGlobal>

namespace GestureTest {

inline QByteArray Be32(quint32 value)
{
    QByteArray bytes(4, '\0');
    bytes[0] = char((value >> 24) & 0xFF);
    bytes[1] = char((value >> 16) & 0xFF);
    bytes[2] = char((value >> 8) & 0xFF);
    bytes[3] = char(value & 0xFF);
    return bytes;
}

/** One entry of the map: its key, then its value. */
inline QByteArray Pair(qint32 key, qint32 value)
{
    return Be32(quint32(key)) + Be32(quint32(value));
}

} // namespace GestureTest
