// SPDX-License-Identifier: MIT
#include "tabpopupproxy.h"

#include <QMouseEvent>

TabPopupProxy::TabPopupProxy(QWidget *parent)
    : QFrame(parent)
{
    setWindowFlags(windowFlags() | Qt::Popup | Qt::FramelessWindowHint);
    setWindowOpacity(0.0);
    setMouseTracking(false);
    resize(1, 1);
    move(0, 0);
    hide();
}

TabPopupProxy::~TabPopupProxy()
{
    // The base destructor hides a visible popup; its owner is usually being
    // destroyed at that moment and must not hear of it.
    blockSignals(true);
}

void TabPopupProxy::mousePressEvent(QMouseEvent *event)
{
    event->accept();
}

void TabPopupProxy::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        LeftButtonReleased();
        hide();
    }
    event->accept();
}

void TabPopupProxy::hideEvent(QHideEvent *event)
{
    QFrame::hideEvent(event);
    Q_EMIT SigButtonRelease();
}

void TabPopupProxy::LeftButtonReleased()
{
}
