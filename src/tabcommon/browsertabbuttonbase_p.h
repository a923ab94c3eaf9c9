// SPDX-License-Identifier: MIT
#pragma once

// The private class of BrowserTabButtonBase. Not part of the installed API. Each
// button's private class derives from it and gives the button its look.

#include "browsertabbuttonbase.h"

#include <QMetaObject>
#include <QPoint>
#include <QRect>
#include <QPointer>
#include <QString>

class BrowserTabBarBase;

class BrowserTabButtonBasePrivate
{
    Q_DECLARE_PUBLIC(BrowserTabButtonBase)
public:
    BrowserTabButtonBasePrivate();
    virtual ~BrowserTabButtonBasePrivate();

    /** The private state of @p button (not null). */
    static BrowserTabButtonBasePrivate *get(BrowserTabButtonBase *button) { return button->d_func(); }
    static const BrowserTabButtonBasePrivate *get(const BrowserTabButtonBase *button) { return button->d_func(); }

    BrowserTabButtonBasePrivate(const BrowserTabButtonBasePrivate &) = delete;
    BrowserTabButtonBasePrivate &operator=(const BrowserTabButtonBasePrivate &) = delete;

    BrowserTabButtonBase *q_ptr = nullptr;

    bool checked = false; // the bar's current tab
    bool pressed = false; // being dragged by the bar
    bool loading = false; // the page is loading
    bool hovered = false; // the pointer is over the button
    bool listed = false;  // in its bar's list of tabs (false once removed, while it waits for deletion)
    // Made by its bar for a new tab: the inner widgets (icon, title, close button) wait
    // until a layout shows the tab. A button a host makes has them from the start.
    bool formDeferred = false;
    QPointer<BrowserTabBarBase> bar;
    TabDataPtr tabData;
    QString requestedIconUrl; // the address last asked of the image cache
    QString iconPath;         // the local file of the icon
    QPoint lastPressGlobalPos;
    // Which press was this button's last right press, counted over all tab buttons: a
    // menu request is a fresh right click when it is newer than the running menu.
    quint64 rightPressSerial = 0;
    static quint64 pressSerial;
    // The scrolling strip's button keeps the record's icon address in step with what it
    // asks for; the classic one leaves the record to the host.
    bool recordsIconUrl = false;
    // The pending icon request; only the answer for the last address asked counts.
    QMetaObject::Connection iconConnection;

    bool IsHomePage() const { return tabData && tabData->IsHomePage(); }
    /** Asks the icon cache for the icon the record calls for, as at construction. */
    void ChooseIconSource();
    /** The bar's double-click policy; false without a bar. */
    bool BarClosesOnDoubleClick() const;
    /** The bar's icon address for a plug-in; empty without a bar. */
    QString BarPluginIconUrl(const QString &pluginCode) const;

    // --- what each button supplies ---------------------------------------------
    virtual void SetTitle(const QString &title) = 0;
    virtual void SetChecked(bool checked) = 0;
    /**
     * The bar took the button up for a drag, or put it down. Marking it is all a button
     * that looks the same while dragged needs; one that restyles calls these first.
     */
    virtual void SetPressed() { pressed = true; }
    virtual void SetReleased() { pressed = false; }
    virtual void LoadStart() = 0;
    virtual void LoadFinished() = 0;
    /** Re-evaluates which icon (or the loading indicator) the button shows. */
    virtual void UpdateIcon() = 0;
    /** A left press on a tab that may be dragged, just before SigButtonPressed(). */
    virtual void LeftPressed() {}
    /** The layout direction changed; the widgets are already in their mirrored places. */
    virtual void DirectionChanged() {}
    /**
     * A button that makes its close button only when it comes into view says so while
     * it has none, so that assistive technology still finds one in its place. Then
     * also: whether that close button would be shown, and where it would lie in the
     * button (on the screen, mirrored right to left).
     */
    virtual bool CloseButtonMadeLater() const { return false; }
    virtual bool CloseButtonWouldShow() const { return false; }
    virtual QRect CloseButtonPlace() const { return QRect(); }
};
