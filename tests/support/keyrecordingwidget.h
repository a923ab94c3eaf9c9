// SPDX-License-Identifier: MIT
#pragma once

#include <QKeyEvent>
#include <QList>
#include <QWidget>

/**
 * A widget that remembers the keys that got through to it, to tell presses a shortcut
 * consumed from presses it passed on. Modifier keys are not recorded: QTest presses
 * them on their own before the key itself.
 */
class KeyRecordingWidget : public QWidget
{
public:
    using QWidget::QWidget;
    QList<int> keys;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        switch (event->key()) {
        case Qt::Key_Control:
        case Qt::Key_Shift:
        case Qt::Key_Alt:
        case Qt::Key_Meta:
            break;
        default:
            keys.append(event->key());
        }
        event->accept();
    }
};
