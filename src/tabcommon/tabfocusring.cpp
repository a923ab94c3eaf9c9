// SPDX-License-Identifier: MIT
#include "tabfocusring_p.h"

#include <QEvent>

TabFocusRing::TabFocusRing(QWidget *parent)
    : QFrame(parent)
{
    setObjectName(QStringLiteral("TabBarFocusRing"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void TabFocusRing::Follow(QWidget *tab)
{
    QWidget *current = parentWidget();
    if (current && current != tab)
        current->removeEventFilter(this);
    if (!tab) {
        hide();
        return;
    }
    if (current != tab) {
        setParent(tab);
        tab->installEventFilter(this);
    }
    setGeometry(tab->rect());
    raise();
    show();
}

bool TabFocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return QFrame::eventFilter(watched, event);
}
