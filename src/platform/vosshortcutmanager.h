// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QList>
#include <QSharedPointer>

class VosShortcut;

/**
 * Process-wide registry that keeps shortcut objects alive for as long as the
 * process needs them, so that whoever created one may drop its own reference.
 *
 * Instance() and ReleaseInstance() belong to the GUI thread like everything else:
 * called from another thread they print a warning and refuse (Instance() returns
 * null). ReleaseInstance() may be called from a destructor that it sets off.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT VosShortcutManager
{
public:
    /** The single instance, created on first use. */
    static VosShortcutManager *Instance();
    /**
     * Destroys the instance and drops its references: shortcut objects nobody else
     * holds are destroyed and stop watching keys at once.
     */
    static void ReleaseInstance();

    /** Keeps @p shortcut; a null pointer or one already kept is ignored. */
    void Add(const QSharedPointer<VosShortcut> &shortcut);
    /** Drops the registry's reference to @p shortcut, if it holds one. */
    void Remove(const QSharedPointer<VosShortcut> &shortcut);
    /** @return the kept objects, in the order they were added. */
    QList<QSharedPointer<VosShortcut>> Shortcuts() const;

    /** Not copyable: the single instance owns what it holds. */
    VosShortcutManager(const VosShortcutManager &) = delete;
    /** Not copyable: the single instance owns what it holds. */
    VosShortcutManager &operator=(const VosShortcutManager &) = delete;

private:
    VosShortcutManager();
    ~VosShortcutManager();

    QList<QSharedPointer<VosShortcut>> m_shortcuts;
};
