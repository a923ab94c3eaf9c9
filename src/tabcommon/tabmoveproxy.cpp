// SPDX-License-Identifier: MIT
#include "tabmoveproxy.h"

#include "eventpoint_p.h"
#include "windowsystem_p.h"

#include <QKeyEvent>
#include <QMouseEvent>

TabMoveProxy::TabMoveProxy(QWidget *parent)
    : TabPopupProxy(parent)
{
    // A Wayland compositor hands the pointer over to a popup as it maps, and the
    // motions that follow reach it without the button that was pressed before: only
    // tracking lets the drag see them. Elsewhere the held button brings every motion.
    if (WindowSystem::IsWayland())
        setMouseTracking(true);
}

TabMoveProxy::~TabMoveProxy() = default;

void TabMoveProxy::SetStartPoint(const QPoint &globalPos)
{
    // A press begins a new hold. The last one may have ended without a left release
    // (the owner or the window system hid the popup); its motion must not make the
    // first event of this hold, often a synthetic one right on the press point,
    // count as a drag.
    m_startPoint = globalPos;
    m_lastGlobalPos = globalPos;
    m_moved = false;
}

QPoint TabMoveProxy::StartPoint() const
{
    return m_startPoint;
}

bool TabMoveProxy::HasMoved() const
{
    return m_moved;
}

QPoint TabMoveProxy::LastGlobalPos() const
{
    return m_lastGlobalPos;
}

void TabMoveProxy::mouseMoveEvent(QMouseEvent *event)
{
    m_lastGlobalPos = KelEventGlobalPos(event);
    if (!m_moved) {
        if (KelEventGlobalPos(event) == m_startPoint)
            return;
        m_moved = true;
    }
    Q_EMIT SigButtonMove();
}

void TabMoveProxy::keyPressEvent(QKeyEvent *event)
{
    // The popup holds the keyboard while it holds the mouse.
    if (event->key() != Qt::Key_Escape || !isVisible()) {
        TabPopupProxy::keyPressEvent(event);
        return;
    }
    event->accept();
    m_moved = false;
    Q_EMIT SigCancelled();
    hide();
}

void TabMoveProxy::LeftButtonReleased()
{
    m_moved = false;
}
