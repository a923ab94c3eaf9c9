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
 * A press that matches is consumed (accepted and not delivered further); every
 * other press passes on untouched. Auto-repeated presses report again. Presses
 * with the Meta (Windows) key held never match: the mask has no bit for it.
 *
 * The object watches through an application-wide event filter, so it sees presses
 * before any widget, including text fields, acts on them. GUI thread only.
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
    ~VosShortcut() override;

    /** Registers one combination; registering it again changes nothing. */
    void AddShortcut(uint keyCode, uint keyModifiers);
    /** @return the registered combinations (key code, modifiers) in registration order. */
    QList<QPair<uint, uint>> Shortcuts() const;

    /** Switches browser mode on or off (off initially). */
    void SetBrowser(bool browser);
    bool IsBrowser() const;

    QWidget *Widget() const;
    Qt::ShortcutContext Context() const;

    /**
     * @return the Windows virtual-key code of the Qt key @p qtKey, taking
     * Qt::KeypadModifier in @p modifiers into account (keypad digits, +, -, *, /
     * and the decimal point have codes of their own); 0 for a key without one.
     */
    static uint VirtualKeyFromQt(int qtKey, Qt::KeyboardModifiers modifiers);
    /** @return the Qt key of the virtual-key code @p keyCode (0 when unknown). */
    static int QtKeyFromVirtualKey(uint keyCode);
    /** @return the mask of @p modifiers (Alt 1, Ctrl 2, Shift 4; keypad and Meta ignored). */
    static uint ModifierMaskFromQt(Qt::KeyboardModifiers modifiers);

Q_SIGNALS:
    /**
     * A registered combination was pressed.
     * @note Not emitted for unregistered combinations, for presses outside the
     * context, nor with the Meta key held.
     */
    void SigActivated(uint keyCode, uint keyModifiers);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool InContext(QWidget *receiver) const;

    QPointer<QWidget> m_widget;
    const Qt::ShortcutContext m_context;
    bool m_browser = false;
    QList<QPair<uint, uint>> m_order;
    QSet<quint64> m_registered;
};
