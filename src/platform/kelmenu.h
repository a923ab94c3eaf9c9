// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QMenu>

/**
 * The library's context menu: a QMenu without the native frame and shadow, so that
 * the style sheet alone draws it (object name "BrowserTabBarMenu" on the tab bars).
 */
class KELTABCONTAINER_EXPORT KelMenu : public QMenu
{
    Q_OBJECT
public:
    explicit KelMenu(QWidget *parent = nullptr);
    ~KelMenu() override;
};
