#include "tabmoveproxy.h"

#include <QMouseEvent>

TabMoveProxy::TabMoveProxy(QWidget *parent)
    : TabPopupProxy(parent)
{
}

TabMoveProxy::~TabMoveProxy() = default;

void TabMoveProxy::SetStartPoint(const QPoint &globalPos)
{
    // A press begins a new hold. The last one may have ended without a left release
    // (the owner or the window system hid the popup); its motion must not make the
    // first event of this hold, often a synthetic one right on the press point,
    // count as a drag.
    m_startPoint = globalPos;
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

void TabMoveProxy::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_moved) {
        if (event->globalPos() == m_startPoint)
            return;
        m_moved = true;
    }
    Q_EMIT SigButtonMove();
}

void TabMoveProxy::LeftButtonReleased()
{
    m_moved = false;
}
