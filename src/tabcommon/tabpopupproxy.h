// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QFrame>

/**
 * An invisible 1 x 1 popup that takes the mouse while a tab button or an arrow is held.
 *
 * Invisible twice over: fully transparent, and, where a platform does not honour
 * window opacity, a translucent window that paints nothing.
 *
 * Being a popup, it receives every mouse event while shown, wherever the pointer is.
 * A left release hides it; any hide (also when the window system closes the popup)
 * emits SigButtonRelease, so the owner always learns that the hold has ended.
 * It never has a parent; its owner deletes it.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT TabPopupProxy : public QFrame
{
    Q_OBJECT
public:
    /** An invisible, hidden 1 x 1 popup; the bars pass no @p parent. */
    explicit TabPopupProxy(QWidget *parent = nullptr);
    /**
     * Blocks its signals first: the destruction hides a shown proxy, and its owner,
     * usually being destroyed itself, must not hear of that.
     */
    ~TabPopupProxy() override;

    /**
     * Shows the proxy for a hold that began in @p owner: the proxy is made a transient
     * of @p owner's window first, which Wayland needs to show a popup at all.
     */
    void ShowFor(QWidget *owner);

Q_SIGNALS:
    /**
     * The hold has ended: emitted on every hide of the proxy, after a left release,
     * an Escape, a hide by the owner or one by the window system.
     * @note Not emitted when the proxy is hidden by its own destruction.
     */
    void SigButtonRelease();

protected:
    /** Paints nothing: the proxy is never to be seen. */
    void paintEvent(QPaintEvent *event) override;
    /** Takes every press while the popup is shown, so that nothing under it is clicked. */
    void mousePressEvent(QMouseEvent *event) override;
    /** A left release calls LeftButtonReleased() and hides the proxy; other releases are swallowed. */
    void mouseReleaseEvent(QMouseEvent *event) override;
    /** Emits SigButtonRelease(). */
    void hideEvent(QHideEvent *event) override;
    /** Called on a left release, before the proxy hides. */
    virtual void LeftButtonReleased();
};
