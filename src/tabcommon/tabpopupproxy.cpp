// SPDX-License-Identifier: MIT
#include "tabpopupproxy.h"

#include <QMouseEvent>
#include <QWindow>

TabPopupProxy::TabPopupProxy(QWidget *parent)
    : QFrame(parent)
{
    setWindowFlags(windowFlags() | Qt::Popup | Qt::FramelessWindowHint);
    setWindowOpacity(0.0);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_NoSystemBackground);
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

void TabPopupProxy::ShowFor(QWidget *owner)
{
    if (owner && owner->window()->windowHandle()) {
        // Created now, so that the window exists to be told its parent before it maps.
        createWinId();
        if (QWindow *handle = windowHandle())
            handle->setTransientParent(owner->window()->windowHandle());
    }
    show();
}

void TabPopupProxy::paintEvent(QPaintEvent *event)
{
    Q_UNUSED(event)
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
