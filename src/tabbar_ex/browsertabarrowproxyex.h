// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabpopupproxy.h"

/**
 * The invisible popup that takes the mouse while a scroll arrow of BrowserTabBarEx is held.
 *
 * BrowserTabArrowEx shows it once the left button has been held for 500 ms. From then
 * on the release reaches this popup instead of the arrow, so the arrow does not report
 * a click; the popup hides itself and reports SigButtonRelease (inherited), also when
 * the window system closes it.
 *
 * It is always made without a parent (a top-level popup); its arrow deletes it.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabArrowProxyEx : public TabPopupProxy
{
    Q_OBJECT
public:
    /** A hidden proxy; the arrow passes no @p parent. */
    explicit BrowserTabArrowProxyEx(QWidget *parent = nullptr);
    /** Its arrow deletes it; no SigButtonRelease() is emitted by the destruction. */
    ~BrowserTabArrowProxyEx() override;
};
