// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QPoint>

/**
 * Scales the library's design sizes (logical pixels at 96 dpi) to the screen.
 *
 * The factor is the primary screen's logical DPI divided by 96 (1.0 when the
 * application sets Qt::AA_Use96Dpi, as Qt's own widget metrics then assume 96 dpi),
 * unless a fixed factor was set with SetScaleFactor(). Every scaled value is rounded to the
 * nearest integer, halves away from zero (qRound): at 1.5, 9 becomes 14 (13.5
 * rounds up) and -9 becomes -14. Callers scale each design value on its own
 * before adding values, so sums of scaled values may differ from the scaled sum.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT DpiTool
{
public:
    /** Not constructible: every operation is static. */
    DpiTool() = delete;

    /** @return @p value at 96 dpi scaled to the current factor, rounded as described above. */
    static int ScaleDefault(int value);
    /** @return @p point with both coordinates scaled like ScaleDefault(int). */
    static QPoint ScaleDefault(const QPoint &point);
    /**
     * @return @p value at 96 dpi in pixels of the library's resource images.
     * The images under ":/images/" are drawn at ImageScale() times their design
     * size, so that they stay sharp up to 200 %; this does not depend on the screen.
     */
    static int ScaleDefaultToImage(int value);
    /** How many image pixels one design pixel has in the resource images (2). */
    static int ImageScale();

    /**
     * @return the factor in force: the fixed one, or the primary screen's (1.0 without
     * a screen or with Qt::AA_Use96Dpi set).
     */
    static double ScaleFactor();
    /**
     * Fixes the factor to @p factor; a value <= 0 returns to the screen's factor.
     * Every live IDpiAdapter is told when the factor in force changes.
     */
    static void SetScaleFactor(double factor);
};
