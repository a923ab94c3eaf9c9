// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QObject>
#include <QSharedPointer>

class IKeyHandlerDelegate;
class QWidget;
class VosShortcut;

/**
 * Gives a widget the browser's keyboard shortcuts and routes each one to the host's
 * IKeyHandlerDelegate.
 *
 * Initialize() registers a fixed table of 47 combinations with the shortcut service
 * (VosShortcut in browser mode, kept by VosShortcutManager). Each press reported by
 * the service is dispatched by its exact modifiers and key: Ctrl (2), Ctrl+Shift (6),
 * Alt+Shift (5), Alt (1) or none (0); other modifier combinations, keys without a
 * rule and keys arriving before a delegate is set are dropped silently and left to
 * the focused widget (VosShortcut::IgnoreActivation()), as is Esc when there is no
 * full screen to leave. Each press leads to at most one operation, plus the
 * IsFullscreen() question for F11 and Esc.
 *
 * GUI thread only.
 *
 * @ingroup shortcuts
 */
class KELTABCONTAINER_EXPORT BrowserKeyHandler : public QObject
{
    Q_OBJECT
public:
    /** A handler that watches no keys until Initialize() and calls no delegate until SetKeyHandlerDelegate(). */
    BrowserKeyHandler();
    /**
     * Disconnects from its shortcut object; that object stays with VosShortcutManager
     * until the manager is released, and its presses then pass on to the widgets.
     */
    ~BrowserKeyHandler() override;

    /**
     * Creates a shortcut object for @p widget in @p context, switches it to browser
     * mode, hands it to VosShortcutManager, connects it and registers the default
     * table. Calling it again makes another object; the previous one stays with the
     * manager and stays connected.
     */
    void Initialize(QWidget *widget, Qt::ShortcutContext context);
    /** Uses @p delegate (not owned) from now on; null drops every key. */
    void SetKeyHandlerDelegate(IKeyHandlerDelegate *delegate);

private Q_SLOTS:
    void SlotActivated(uint keyCode, uint keyModifiers);

private:
    void RegisterDefaultShortcut();
    void RegisterShortcut(uint keyCode, uint keyModifiers);
    /** Runs the operation of the press; @return false when it ran none. */
    static bool Dispatch(IKeyHandlerDelegate *delegate, uint keyCode, uint keyModifiers);

    IKeyHandlerDelegate *m_delegate = nullptr;
    QSharedPointer<VosShortcut> m_shortcut;
};
