// SPDX-License-Identifier: MIT
#include "tabmenuwatcher_p.h"

#include "eventpoint_p.h"

#include <QApplication>
#include <QMenu>
#include <QMouseEvent>

TabMenuWatcher::TabMenuWatcher(QMenu *menu)
    : QObject(menu)
    , m_menu(menu)
{
    menu->installEventFilter(this);
}

TabMenuWatcher::~TabMenuWatcher() = default;

bool TabMenuWatcher::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_menu || event->type() != QEvent::MouseButtonPress)
        return false;
    auto *press = static_cast<QMouseEvent *>(event);
    if (press->button() != Qt::RightButton || m_menu->rect().contains(KelEventPos(press)))
        return false;
    QWidget *widget = QApplication::widgetAt(KelEventGlobalPos(press));
    if (!widget || widget->window() == m_menu)
        return false;
    bool taken = false;
    Q_EMIT SigRightPressElsewhere(widget, KelEventGlobalPos(press), &taken);
    if (!taken)
        return false;
    // The press is ours: where the window system would replay it to the widget under
    // the pointer once the menu has gone, it must not be.
    m_menu->setAttribute(Qt::WA_NoMouseReplay);
    m_menu->hide();
    return true;
}
