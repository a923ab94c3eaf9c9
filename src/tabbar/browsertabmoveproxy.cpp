// SPDX-License-Identifier: MIT
#include "browsertabmoveproxy.h"

// The behaviour (popup flags, transparency, move and release reporting) is the
// shared proxy's; the classic bar keeps a class of its own so that hosts and style
// sheets can tell its proxy from the extended bar's.
BrowserTabMoveProxy::BrowserTabMoveProxy(QWidget *parent)
    : TabMoveProxy(parent)
{
}

BrowserTabMoveProxy::~BrowserTabMoveProxy() = default;
