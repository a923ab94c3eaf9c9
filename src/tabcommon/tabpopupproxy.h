// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QFrame>

/**
 * An invisible 1 x 1 popup that takes the mouse while a tab button or an arrow is held.
 *
 * Being a popup, it receives every mouse event while shown, wherever the pointer is.
 * A left release hides it; any hide (also when the window system closes the popup)
 * emits SigButtonRelease, so the owner always learns that the hold has ended.
 * It never has a parent; its owner deletes it.
 */
class KELTABCONTAINER_EXPORT TabPopupProxy : public QFrame
{
    Q_OBJECT
public:
    explicit TabPopupProxy(QWidget *parent = nullptr);
    ~TabPopupProxy() override;

Q_SIGNALS:
    void SigButtonRelease();

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    /** Called on a left release, before the proxy hides. */
    virtual void LeftButtonReleased();
};
