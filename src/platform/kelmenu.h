// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QMenu>

/**
 * The library's context menu: a QMenu without the native frame and shadow, so that
 * the style sheet alone draws it (object name "BrowserTabBarMenu" on the tab bars).
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelMenu : public QMenu
{
    Q_OBJECT
public:
    /** An empty menu without native frame and shadow. */
    explicit KelMenu(QWidget *parent = nullptr);
    /** Nothing beyond QMenu's own clean-up. */
    ~KelMenu() override;
};
