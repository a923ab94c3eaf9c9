// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabpopupproxy.h"

#include <QPoint>

/**
 * The popup that follows the mouse while a tab button is dragged.
 *
 * After SetStartPoint() and show(), every mouse move emits SigButtonMove, except
 * moves that stay exactly on the start point before the pointer has left it once;
 * so a press and release without motion emits no SigButtonMove at all. Escape ends
 * the hold as a cancel: SigCancelled, then the hide's SigButtonRelease.
 */
class KELTABCONTAINER_EXPORT TabMoveProxy : public TabPopupProxy
{
    Q_OBJECT
public:
    explicit TabMoveProxy(QWidget *parent = nullptr);
    ~TabMoveProxy() override;

    /** The global cursor position at the press; begins a new hold, so HasMoved() is false again. */
    void SetStartPoint(const QPoint &globalPos);
    QPoint StartPoint() const;
    /** True once the pointer has left the start point during this hold. */
    bool HasMoved() const;
    /**
     * Where the pointer was at the last move of this hold (the start point before any),
     * in global coordinates, as the move event told it.
     */
    QPoint LastGlobalPos() const;

Q_SIGNALS:
    void SigButtonMove();
    /** Escape was pressed during the hold; the proxy hides right after (SigButtonRelease). */
    void SigCancelled();

protected:
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void LeftButtonReleased() override;

private:
    bool m_moved = false;
    QPoint m_startPoint;
    QPoint m_lastGlobalPos;
};
