// SPDX-License-Identifier: MIT
#include "vosshortcutmanager.h"

#include "guisingleton_p.h"

#include "vosshortcut.h"


namespace {

GuiSingleton<VosShortcutManager> g_instance;

} // namespace

VosShortcutManager::VosShortcutManager() = default;

VosShortcutManager::~VosShortcutManager() = default;

VosShortcutManager *VosShortcutManager::Instance()
{
    return g_instance.Instance("VosShortcutManager", [] { return new VosShortcutManager; });
}

void VosShortcutManager::ReleaseInstance()
{
    g_instance.Release("VosShortcutManager", [](VosShortcutManager *instance) { delete instance; });
}

void VosShortcutManager::Add(const QSharedPointer<VosShortcut> &shortcut)
{
    if (!shortcut || m_shortcuts.contains(shortcut))
        return;
    m_shortcuts.append(shortcut);
}

void VosShortcutManager::Remove(const QSharedPointer<VosShortcut> &shortcut)
{
    m_shortcuts.removeAll(shortcut);
}

QList<QSharedPointer<VosShortcut>> VosShortcutManager::Shortcuts() const
{
    return m_shortcuts;
}
