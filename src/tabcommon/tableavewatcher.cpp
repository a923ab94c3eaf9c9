// SPDX-License-Identifier: MIT
#include "tableavewatcher_p.h"

#include <QEvent>
#include <QWidget>

TabLeaveWatcher::TabLeaveWatcher(QWidget *strip)
    : QObject(strip)
    , m_strip(strip)
{
}

TabLeaveWatcher::~TabLeaveWatcher()
{
    Disarm();
}

void TabLeaveWatcher::Arm()
{
    QWidget *window = m_strip->window();
    if (window == m_window)
        return;
    Disarm();
    // A strip without a parent is its own window and hears its own Leave.
    if (window == m_strip)
        return;
    m_window = window;
    m_window->installEventFilter(this);
}

void TabLeaveWatcher::Disarm()
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = nullptr;
}

bool TabLeaveWatcher::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && event->type() == QEvent::Leave)
        Q_EMIT SigPointerLeftWindow();
    return false;
}
