// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library: the stored form of a gesture map. It depends on QtCore
// only, so that the decoder can be built and fuzzed on its own.

#include <QByteArray>
#include <QMap>
#include <QString>

/**
 * Converts a gesture map (shape value -> action value) to and from its stored image:
 * the entry count as an unsigned 32-bit big-endian integer, then every entry from the
 * highest key down to the lowest as two signed 32-bit big-endian integers (key,
 * value). That is what Qt 5's QDataStream writes for a QMap<int, int>; Qt 6's writes
 * the entries the other way round, so the image is written here entry by entry and
 * stays the same whichever Qt the library is built with. The text form is standard
 * Base64 of the image.
 */
class GestureMapCodec
{
public:
    GestureMapCodec() = delete;

    /** @return the image of @p map. */
    static QByteArray Encode(const QMap<int, int> &map);
    /**
     * @return the map in @p image. An image that ends before its count of entries
     * does yields an empty map, as does an empty image; bytes after the last entry
     * are ignored. When a key appears more than once, the entry read last wins (the
     * one QMap::value() would give after QDataStream's own reading). Keys and values
     * are taken as they are, without checking them against the enums.
     */
    static QMap<int, int> Decode(const QByteArray &image);

    /** @return Base64 of Encode(@p map). */
    static QString EncodeText(const QMap<int, int> &map);
    /**
     * @return Decode() of the Base64 decoding of @p text's UTF-8 form. Decoding is
     * lenient: characters outside the Base64 alphabet are skipped.
     */
    static QMap<int, int> DecodeText(const QString &text);
};
