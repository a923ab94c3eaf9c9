// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabmoveproxy.h"

/**
 * The invisible popup that takes the mouse while a tab button of BrowserTabBarEx is dragged.
 *
 * The bar gives it the global cursor position of the press (SetStartPoint()) and shows
 * it; every later mouse move away from that point emits SigButtonMove, and the left
 * release hides the popup, which emits SigButtonRelease.
 *
 * It is always made without a parent (a top-level popup); the bar deletes it.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabMoveProxyEx : public TabMoveProxy
{
    Q_OBJECT
public:
    /** A hidden proxy; the bar passes no @p parent. */
    explicit BrowserTabMoveProxyEx(QWidget *parent = nullptr);
    /** The bar deletes it; no SigButtonRelease() is emitted by the destruction. */
    ~BrowserTabMoveProxyEx() override;
};
