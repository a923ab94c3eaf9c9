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
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT TabMoveProxy : public TabPopupProxy
{
    Q_OBJECT
public:
    /** A hidden proxy with the start point at (0, 0); the bars pass no @p parent. */
    explicit TabMoveProxy(QWidget *parent = nullptr);
    /** The owner deletes it; see ~TabPopupProxy() for the signals. */
    ~TabMoveProxy() override;

    /** The global cursor position at the press; begins a new hold, so HasMoved() is false again. */
    void SetStartPoint(const QPoint &globalPos);
    /** @return the global position given to SetStartPoint() ((0, 0) before any). */
    QPoint StartPoint() const;
    /** True once the pointer has left the start point during this hold. */
    bool HasMoved() const;
    /**
     * Where the pointer was at the last move of this hold (the start point before any),
     * in global coordinates, as the move event told it.
     */
    QPoint LastGlobalPos() const;

Q_SIGNALS:
    /**
     * The pointer moved during the hold; read LastGlobalPos() for where.
     * @note Not emitted for moves that stay on the start point before the pointer has
     * left it once, nor after the proxy has hidden.
     */
    void SigButtonMove();
    /** Escape was pressed during the hold; the proxy hides right after (SigButtonRelease). */
    void SigCancelled();

protected:
    /** Records the position and emits SigButtonMove() (see the class description). */
    void mouseMoveEvent(QMouseEvent *event) override;
    /** Escape while shown: SigCancelled(), then the proxy hides. Other keys go to the base class. */
    void keyPressEvent(QKeyEvent *event) override;
    void LeftButtonReleased() override;

private:
    bool m_moved = false;
    QPoint m_startPoint;
    QPoint m_lastGlobalPos;
};
