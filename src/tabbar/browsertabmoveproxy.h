// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabmoveproxy.h"

/**
 * The invisible popup that takes the mouse while a tab of the classic bar
 * (BrowserTabBar) is held.
 *
 * It is a parentless 1 x 1 popup with zero opacity; the bar that makes it deletes it.
 * While shown it emits SigButtonMove for every mouse move that has left the press
 * position (SetStartPoint) at least once, hides itself on a left-button release, and
 * emits SigButtonRelease whenever it hides.
 *
 * @note A press and release without motion emits no SigButtonMove. Releases of other
 * buttons than the left one leave the proxy shown.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabMoveProxy : public TabMoveProxy
{
    Q_OBJECT
public:
    /** @param parent always null in the bar: a popup with a parent would be clipped to it. */
    explicit BrowserTabMoveProxy(QWidget *parent = nullptr);
    /** The bar deletes it; no SigButtonRelease() is emitted by the destruction. */
    ~BrowserTabMoveProxy() override;
};
