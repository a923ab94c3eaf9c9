// SPDX-License-Identifier: MIT
#include "browsertabmoveproxyex.h"

BrowserTabMoveProxyEx::BrowserTabMoveProxyEx(QWidget *parent)
    : TabMoveProxy(parent)
{
}

BrowserTabMoveProxyEx::~BrowserTabMoveProxyEx() = default;
