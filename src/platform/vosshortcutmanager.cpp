#include "vosshortcutmanager.h"

#include "vosshortcut.h"

#include <QAtomicPointer>
#include <QMutex>
#include <QMutexLocker>

namespace {

QAtomicPointer<VosShortcutManager> g_instance;

QMutex &InstanceMutex()
{
    static QMutex mutex;
    return mutex;
}

} // namespace

VosShortcutManager::VosShortcutManager() = default;

VosShortcutManager::~VosShortcutManager() = default;

VosShortcutManager *VosShortcutManager::Instance()
{
    if (VosShortcutManager *existing = g_instance.loadAcquire())
        return existing;
    QMutexLocker locker(&InstanceMutex());
    VosShortcutManager *instance = g_instance.loadAcquire();
    if (!instance) {
        instance = new VosShortcutManager;
        g_instance.storeRelease(instance);
    }
    return instance;
}

void VosShortcutManager::ReleaseInstance()
{
    if (!g_instance.loadAcquire())
        return;
    QMutexLocker locker(&InstanceMutex());
    if (VosShortcutManager *instance = g_instance.loadAcquire()) {
        g_instance.storeRelease(nullptr);
        delete instance;
    }
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
