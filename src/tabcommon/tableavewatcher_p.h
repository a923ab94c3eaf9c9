// SPDX-License-Identifier: MIT
#pragma once

// Tells a tab strip that the pointer has left its window. Not part of the installed API.

#include <QObject>
#include <QPointer>

class QWidget;

/**
 * While armed, watches the window of a tab strip for the pointer leaving it.
 *
 * A strip learns that the pointer left it from its own Leave. But when the widget Qt
 * last saw under the pointer has been deleted (a close button just clicked), a quick
 * exit reaches the window alone: Qt sends the Leave to the top-level and to nothing
 * inside it. The window's Leave always comes, so a strip waiting for the pointer to go
 * (after closing tabs under it) listens there too.
 */
class TabLeaveWatcher : public QObject
{
    Q_OBJECT
public:
    /** @param strip the strip whose window is watched; also the watcher's parent */
    explicit TabLeaveWatcher(QWidget *strip);
    ~TabLeaveWatcher() override;

    /** Starts watching the strip's present window (the strip may have moved to another). */
    void Arm();
    void Disarm();

Q_SIGNALS:
    /** The pointer left the strip's window. */
    void SigPointerLeftWindow();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *m_strip;
    QPointer<QWidget> m_window;
};
