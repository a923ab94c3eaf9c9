// SPDX-License-Identifier: MIT
#pragma once

// The Enter and Leave a widget hears when the pointer comes and goes, sent straight
// to it: enough for the hover looks, without moving a real pointer.

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>

namespace KelTest {

inline void SendEnter(QWidget *widget)
{
    QEvent event(QEvent::Enter);
    QCoreApplication::sendEvent(widget, &event);
}

inline void SendLeave(QWidget *widget)
{
    QEvent event(QEvent::Leave);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace KelTest
