// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabdata.h"

#include <QFrame>
#include <QPoint>

#include <memory>

class BrowserTabBarBase;
class BrowserTabButtonBasePrivate;
class QMouseEvent;

/**
 * What the tab buttons of both strips have in common: the tab's record, the state the
 * bar drives (current, dragged, loading) and the pointer's (hovered), the icon fetched
 * through VosImageCache, and the signals by which the button reports the user's intent
 * to its bar. A button never selects, closes or moves a tab itself.
 *
 * The buttons are BrowserTabButtonEx (scrolling strip) and BrowserTabButton (classic
 * strip); each has its own look and layout. Their look comes from style sheets keyed
 * on object names, which they switch as their state changes.
 *
 * GUI thread only. The bar is watched through a guarded pointer: a button that
 * outlives its bar (deleted later) never calls into it.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabButtonBase : public QFrame
{
    Q_OBJECT
public:
    /** The bar deletes its buttons; a host does not. */
    ~BrowserTabButtonBase() override;

    /** The tab's record, shared with the bar. */
    TabDataPtr GetTabData() const;

    /** Sets the title (record, tool tip, label). @note An empty @p title is ignored. */
    void SetTitle(const QString &title);
    /**
     * Asks the icon cache for @p url; the answer becomes the icon (a failure clears it).
     * Answers for any address but the last one asked are ignored.
     */
    void SetIconUrl(const QString &url);
    /** Makes the button the current tab or not. */
    void SetChecked(bool checked);
    /** @return true when the button is the current tab. */
    bool IsChecked() const;
    /** The bar has started dragging this button. */
    void SetPressed();
    /** The drag of this button has ended. */
    void SetReleased();
    /** True while the bar drags this button. */
    bool IsPressed() const;
    /** True while the pointer is over the button. */
    bool IsHovered() const;
    /** Shows the loading indicator instead of the icon. */
    void LoadStart();
    /** Hides the loading indicator and shows the icon again. */
    void LoadFinished();
    /** @return true between LoadStart() and LoadFinished(). */
    bool IsLoading() const;
    /** The address last asked of the icon cache; empty when none was asked. */
    QString GetRequestedIconUrl() const;
    /** The local file of the tab's icon; empty when the tab has none. */
    QString GetIconPath() const;
    /** Chooses the icon source again from the record (plug-in icon, web icon) and shows it. */
    void ReloadIcon();
    /** Where the pointer was at the last press on the button, in global coordinates. */
    QPoint LastPressGlobalPos() const;

Q_SIGNALS:
    /** The left button was pressed on the tab. */
    void SigChangeClicked(TabDataPtr tabData);
    /** The close button was clicked, or the tab double-clicked while the bar closes tabs on double clicks. */
    void SigCloseClicked(TabDataPtr tabData);
    /** The right button was pressed. @note Not emitted while the button is dragged. */
    void SigMenuClicked(TabDataPtr tabData);
    /** The left button was pressed on a tab that may be dragged. @note Never emitted by a home-page tab. */
    void SigButtonPressed();

public Q_SLOTS:
    /** Emits SigCloseClicked() for this tab (the close button's clicked signal). */
    void SlotCloseClicked();
    /** The icon cache's answer; answers for any address but the last one asked are ignored. */
    void SlotRequestImageFinished(bool success, const QString &url, const QString &localPath);

protected:
    /**
     * Constructs the button around @p dd, the private state of the strip's own button,
     * which it owns from then on. Only the two strips' buttons call it.
     * @param dd       the derived button's private state
     * @param tabData  the tab's record, shared with the bar
     * @param iconPath a local icon file to start with
     * @param loading  start with the loading indicator turning
     * @param bar      the bar that owns the button, asked for its policy
     * @param parent   the widget the button is shown in
     */
    BrowserTabButtonBase(BrowserTabButtonBasePrivate &dd, TabDataPtr tabData, const QString &iconPath, bool loading,
                         BrowserTabBarBase *bar, QWidget *parent);

    /**
     * Left button: SigChangeClicked(), then, for a tab that may be dragged,
     * SigButtonPressed(). Right button: SigMenuClicked(), unless the button is dragged.
     * A receiver may delete the button; nothing is emitted after that.
     */
    void mousePressEvent(QMouseEvent *event) override;
    /** Emits SigCloseClicked() when the bar closes tabs on double clicks (BrowserTabBarBase::IsDoubleCloseTab()). */
    void mouseDoubleClickEvent(QMouseEvent *event) override;

    /** The button's private state, shared with the strip's own button's private class that derives from it. */
    std::unique_ptr<BrowserTabButtonBasePrivate> const d_ptr;

private:
    Q_DECLARE_PRIVATE(BrowserTabButtonBase)
};
