// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QString>

#include <memory>

class QPixmap;

/**
 * The painted backgrounds of the classic tab buttons, built for one width at a time.
 *
 * The classic bar owns one cache for all its buttons: they share one width, so the
 * three backgrounds (checked, plain and hovered) are stretched from their images once
 * per width instead of once per paint. Each background is a three-slice stretch of
 * ":/images/tab_bar/tabbutton_front.png", "tabbutton_back.png" and
 * "tabbutton_back_hover.png": the 16-pixel caps keep their shape (the rounded top
 * corners), the middle column is repeated.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabButtonBg
{
public:
    /** An empty cache: nothing is built until the first GetButtonBg(). */
    BrowserTabButtonBg();
    /** Frees the backgrounds; pixmaps handed out by GetButtonBg() go with them. */
    ~BrowserTabButtonBg();
    /** Not copyable: a cache owns what it holds. */
    BrowserTabButtonBg(const BrowserTabButtonBg &) = delete;
    /** Not copyable: a cache owns what it holds. */
    BrowserTabButtonBg &operator=(const BrowserTabButtonBg &) = delete;

    /**
     * The background for a button of @p width pixels.
     *
     * A width other than the cached one rebuilds all three backgrounds for it first.
     * @param width   the button's width in pixels
     * @param checked the button is the current tab (front background)
     * @param hovered the pointer is over an unchecked button (hover background)
     * @return the pixmap, owned by the cache and valid until the width changes;
     * null for a width of 0 or less.
     */
    QPixmap *GetButtonBg(int width, bool checked, bool hovered);

    /**
     * Reads the checked background's image again and rebuilds the background at the
     * cached width (for a host that swaps images at run time: the images are otherwise
     * read once).
     */
    void RebuildFront();
    /** Rebuilds the plain background at the cached width, like RebuildFront(). */
    void RebuildBack();
    /** Rebuilds the hovered background at the cached width, like RebuildFront(). */
    void RebuildBackHover();

    /** Forgets every background and image, as at construction (the next request reads and builds again). */
    void Clear();

    /** The width the backgrounds were built for; 0 when none are built. */
    int Width() const;

    /**
     * Diagnostics: how many background pixmaps this cache has built since it was made
     * (a width change counts three). Lets tests and profilers check that painting
     * reuses the backgrounds instead of stretching the images again.
     */
    int BuildCount() const;

    /** The resource image the checked background is stretched from. */
    static QString FrontImage();
    /** The resource image the plain background is stretched from. */
    static QString BackImage();
    /** The resource image the hovered background is stretched from. */
    static QString BackHoverImage();

private:
    enum Kind { Front, Back, BackHover, KindCount };
    std::unique_ptr<QPixmap> Build(Kind kind);
    /**
     * The image of @p kind, read at its first use and kept: reading an image file costs
     * more than stretching it. @p reload reads it again (a host may have swapped it).
     */
    const QPixmap &Source(Kind kind, bool reload = false);

    std::unique_ptr<QPixmap> m_sources[KindCount];

    int m_width = 0;
    std::unique_ptr<QPixmap> m_front;
    std::unique_ptr<QPixmap> m_back;
    std::unique_ptr<QPixmap> m_backHover;
    int m_buildCount = 0;
};
