// SPDX-License-Identifier: MIT
#include "browsertabarrowproxyex.h"

BrowserTabArrowProxyEx::BrowserTabArrowProxyEx(QWidget *parent)
    : TabPopupProxy(parent)
{
}

BrowserTabArrowProxyEx::~BrowserTabArrowProxyEx() = default;
