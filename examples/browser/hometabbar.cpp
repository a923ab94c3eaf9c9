// SPDX-License-Identifier: MIT
#include "hometabbar.h"

QString HomeTabBar::GetPluginIconUrl(const QString &pluginCode)
{
    Q_UNUSED(pluginCode)
    return PluginIcon();
}
