#include "tabmoveproxy.h"

#include <QMouseEvent>

TabMoveProxy::TabMoveProxy(QWidget *parent)
    : TabPopupProxy(parent)
{
}

TabMoveProxy::~TabMoveProxy() = default;

void TabMoveProxy::SetStartPoint(const QPoint &globalPos)
{
    m_startPoint = globalPos;
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
