// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QSet>

class QKeyEvent;
class QWidget;

/**
 * Watches the key presses of one widget and reports the combinations registered
 * with AddShortcut().
 *
 * Keys are Windows virtual-key codes and modifiers the mask 1 = Alt, 2 = Ctrl,
 * 4 = Shift (sums for combinations, 0 for none), whatever the platform, so that a
 * table of shortcuts is written once. VirtualKeyFromQt() and ModifierMaskFromQt()
 * give the translation used.
 *
 * Which presses count depends on the context given to the constructor, as for
 * QShortcut: Qt::WidgetShortcut, presses delivered to the widget itself;
 * Qt::WidgetWithChildrenShortcut, to the widget or any descendant;
 * Qt::WindowShortcut, to any widget of the widget's window while the widget is
 * visible; Qt::ApplicationShortcut, to any widget while the widget is visible.
 * In browser mode (SetBrowser()) a Qt::WidgetShortcut also takes presses delivered
 * to descendants, because an embedded web view takes the focus in a child widget of
 * its own.
 *
 * Keys are matched as browsers match them, so that one table works on every
 * keyboard layout (see VirtualKeyFromEvent()): letters and digits by the physical
 * key's position, the zoom characters +, = and - (and 0) by the character wherever
 * the layout has it, everything else by its Qt key. Where a digit key types a zoom
 * character (the French "-" on the 6), the zoom meaning wins.
 *
 * A press that matches is reported and consumed (accepted and not delivered
 * further), except that, as with QShortcut:
 * - the focus widget is asked first with a QEvent::ShortcutOverride; if it accepts,
 *   the key is its own (a line edit keeps Ctrl+A, Ctrl+Left, and an address bar
 *   that wants Escape gets it);
 * - a press nobody listens to (no receiver of SigActivated), or one a receiver
 *   turns down with IgnoreActivation(), goes on to the widget;
 * - Qt::ApplicationShortcut does not fire while a modal window shuts the widget's
 *   window out.
 * Every other press passes on untouched. Auto-repeated presses report again.
 * Presses with the Meta (Windows) key held never match: the mask has no bit for it.
 *
 * The object watches through an application-wide event filter, so it sees presses
 * before any widget acts on them. GUI thread only.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT VosShortcut : public QObject
{
    Q_OBJECT
public:
    /** Modifier bits of the mask. */
    enum ModifierBits : uint { ModifierAlt = 1, ModifierCtrl = 2, ModifierShift = 4 };

    /**
     * @param widget the widget whose presses are watched (not owned; when it is
     * destroyed, the object stops reporting)
     * @param context which presses count, see the class description
     */
    VosShortcut(QWidget *widget, Qt::ShortcutContext context);
    /** Stops watching: no SigActivated() after this. */
    ~VosShortcut() override;

    /** Registers one combination; registering it again changes nothing. */
    void AddShortcut(uint keyCode, uint keyModifiers);
    /** @return the registered combinations (key code, modifiers) in registration order. */
    QList<QPair<uint, uint>> Shortcuts() const;

    /** Switches browser mode on or off (off initially). */
    void SetBrowser(bool browser);
    /** @return true in browser mode. */
    bool IsBrowser() const;

    /** @return the watched widget; null once it was destroyed. */
    QWidget *Widget() const;
    /** @return the context given to the constructor. */
    Qt::ShortcutContext Context() const;

    /**
     * @return the Windows virtual-key code of the Qt key @p qtKey, taking
     * Qt::KeypadModifier in @p modifiers into account (keypad digits, +, -, *, /
     * and the decimal point have codes of their own); 0 for a key without one.
     */
    static uint VirtualKeyFromQt(int qtKey, Qt::KeyboardModifiers modifiers);
    /**
     * @return the key code a press is matched by: for a keypad key its keypad code;
     * for + = - 0 (the zoom characters) their main-keyboard code, whichever key
     * typed them; for a press with native codes that name a letter or digit key,
     * that key's code by its position (PhysicalKeyFromNative()); otherwise
     * VirtualKeyFromQt() of the Qt key (where native codes are at hand, without the
     * US keyboard's shifted digits "!", "@", ...). 0 for a key without a code.
     */
    static uint VirtualKeyFromEvent(const QKeyEvent *event);
    /**
     * @return the virtual-key code ('A' to 'Z', '0' to '9') of the letter or digit
     * key at the position the native codes name, or 0 for any other key.
     * @param platformName QGuiApplication::platformName(): "xcb" and "wayland*" give
     * X key codes as the scan code (evdev codes + 8; an unknown code falls back to the
     * layout's keysym when it is a Latin letter or digit); "windows" gives Windows
     * virtual keys; "cocoa" gives macOS key codes as the virtual key. Other
     * platforms have no native codes and give 0.
     * @param nativeScanCode QKeyEvent::nativeScanCode() of the press
     * @param nativeVirtualKey QKeyEvent::nativeVirtualKey() of the press
     */
    static uint PhysicalKeyFromNative(const QString &platformName, quint32 nativeScanCode,
                                      quint32 nativeVirtualKey);
    /** @return the Qt key of the virtual-key code @p keyCode (0 when unknown). */
    static int QtKeyFromVirtualKey(uint keyCode);
    /** @return the mask of @p modifiers (Alt 1, Ctrl 2, Shift 4; keypad and Meta ignored). */
    static uint ModifierMaskFromQt(Qt::KeyboardModifiers modifiers);

    /**
     * Called from a slot connected (directly) to SigActivated(): the press being
     * reported is not consumed and goes on to its widget, as if it had not matched.
     * For a receiver that has no command for the key at the moment.
     */
    void IgnoreActivation();

Q_SIGNALS:
    /**
     * A registered combination was pressed.
     * @note Not emitted for unregistered combinations, for presses outside the
     * context, for presses the focus widget claims through ShortcutOverride, while
     * a modal window blocks an application shortcut, nor with the Meta key held.
     */
    void SigActivated(uint keyCode, uint keyModifiers);

protected:
    /**
     * Reports and consumes the presses that match, as described for the class; every
     * other event passes on untouched.
     */
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool InContext(QWidget *receiver) const;
    static bool IsBlockedByModal(const QWidget *window);
    bool FocusWidgetWantsKey(QWidget *receiver, const QKeyEvent *key);
    void NotePassedOn(const QKeyEvent *key, QWidget *receiver);
    bool IsPassedOnPress(const QKeyEvent *key, QWidget *receiver) const;

    QPointer<QWidget> m_widget;
    const Qt::ShortcutContext m_context;
    bool m_browser = false;
    bool m_askingOverride = false;
    bool m_activationIgnored = false;
    // The last press left to its widget, to know it again when Qt hands it on to
    // the widget's parents. Compared, never dereferenced.
    struct PassedOn
    {
        const QKeyEvent *event = nullptr;
        QPointer<QWidget> receiver;
        int key = 0;
        Qt::KeyboardModifiers modifiers;
        ulong timestamp = 0;
    };
    PassedOn m_passedOn;
    QList<QPair<uint, uint>> m_order;
    QSet<quint64> m_registered;
};
