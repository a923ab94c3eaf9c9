// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library: what the icon cache accepts as an icon.

#include <QByteArray>
#include <QImage>

/**
 * Decodes untrusted icon bytes, from the network or any other source the user does
 * not control, with as little of the image machinery exposed as possible:
 * - only PNG, ICO, JPEG, GIF, BMP, WebP and SVG are decoded, each by its own
 *   handler, chosen from the bytes' signature (never from a name or a server's
 *   word, and never by letting every installed image plugin try);
 * - SVG only without references outside the document (external images, entities,
 *   style sheets), which the SVG renderer would otherwise load from disk;
 * - the size in pixels is read from the header first, and a picture larger than
 *   MaxDimension on either side is refused before its pixels are decoded.
 */
class IconDecoder
{
public:
    /** Largest width or height accepted, in pixels. */
    static constexpr int MaxDimension = 1024;

    IconDecoder() = delete;

    /** @return the image format name ("png", "svg", ...) of @p bytes, or empty when not allowed. */
    static QByteArray Format(const QByteArray &bytes);
    /** @return the decoded icon, or a null image when @p bytes are refused. */
    static QImage Decode(const QByteArray &bytes);

private:
    static bool IsSelfContainedSvg(const QByteArray &bytes);
};
