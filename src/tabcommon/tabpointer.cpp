// SPDX-License-Identifier: MIT
#include "tabpointer_p.h"

#include "windowsystem_p.h"

#include <QApplication>
#include <QCursor>
#include <QEnterEvent>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScreen>
#include <QVector>
#include <QWidget>
#include <QWindow>

namespace TabPointer {

namespace {

// Style sheets draw :hover from hover events, not from the enter or leave itself.
// (-1, -1) stands for "outside" as in Qt's own hover events. Qt 6.3 added the global
// position to the constructor and deprecated the one without it.
void SendHover(QWidget *widget, QEvent::Type type, const QPoint &pos, const QPoint &oldPos, const QPoint &global)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 3, 0)
    QHoverEvent hover(type, pos, global, oldPos);
#else
    Q_UNUSED(global)
    QHoverEvent hover(type, pos, oldPos);
#endif
    QCoreApplication::sendEvent(widget, &hover);
}

void SendLeave(QWidget *widget, const QPoint &global)
{
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(widget, &leave);
    if (widget->testAttribute(Qt::WA_Hover))
        SendHover(widget, QEvent::HoverLeave, QPoint(-1, -1), widget->mapFromGlobal(global), global);
}

void SendEnter(QWidget *widget, const QPoint &global)
{
    const QPoint local = widget->mapFromGlobal(global);
    QEnterEvent enter(local, widget->window()->mapFromGlobal(global), global);
    QCoreApplication::sendEvent(widget, &enter);
    if (widget->testAttribute(Qt::WA_Hover))
        SendHover(widget, QEvent::HoverEnter, local, QPoint(-1, -1), global);
}

// Descendants of @p node that count as under the pointer but lie off @p path, the
// deepest first, as Qt itself sends leaves. Only hovered branches are walked.
void CollectStale(QWidget *node, const QVector<QWidget *> &path, QVector<QPointer<QWidget>> *stale)
{
    const QObjectList &children = node->children();
    for (QObject *object : children) {
        if (!object->isWidgetType())
            continue;
        auto *child = static_cast<QWidget *>(object);
        if (child->isWindow() || !child->testAttribute(Qt::WA_UnderMouse))
            continue;
        CollectStale(child, path, stale);
        if (!path.contains(child))
            stale->append(child);
    }
}

} // namespace

bool GlobalPos(QPoint *pos)
{
    // A Wayland client is never told where the pointer is outside its own surfaces:
    // there QCursor::pos() is only the last position seen inside them, stale the
    // moment the pointer leaves.
    if (WindowSystem::IsWayland())
        return false;
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (!screen)
        return false;
    *pos = QCursor::pos(screen);
    return true;
}

bool IsOver(const QWidget *widget)
{
    if (!widget)
        return false;
    QPoint global;
    if (!GlobalPos(&global)) {
        // What the window system last reported: Qt marks a widget under the mouse on
        // its Enter and clears the mark before delivering its Leave.
        return widget->underMouse();
    }
    return widget->rect().contains(widget->mapFromGlobal(global));
}

bool Resync(QWidget *strip)
{
    if (!strip || !strip->isVisible())
        return true;
    // A popup holds the pointer: later.
    if (QApplication::activePopupWidget())
        return false;
    // A button still down (the press that closed a menu, say): a made-up motion now
    // would cross Qt's own bookkeeping, so only what surely went stale is put right
    // now, and the rest later.
    const bool buttonDown = QGuiApplication::mouseButtons() != Qt::NoButton;
    QPoint global;
    if (!GlobalPos(&global))
        return true;
    QWidget *window = strip->window();
    QWindow *handle = window->windowHandle();
    if (!handle)
        return true;

    // The chain of the strip's widgets under the pointer, outermost first; empty when
    // the pointer is elsewhere (also when another window covers the strip there).
    QVector<QWidget *> path;
    QWidget *under = QApplication::widgetAt(global);
    if (under && (under == strip || strip->isAncestorOf(under))) {
        for (QWidget *w = under; w; w = w->parentWidget()) {
            path.prepend(w);
            if (w == strip)
                break;
        }
    }
    if (path.isEmpty() && !strip->testAttribute(Qt::WA_UnderMouse))
        return !buttonDown; // the pointer is elsewhere and nothing of ours thinks otherwise

    const QPointer<QWidget> guard(strip);
    if (!path.isEmpty() && !buttonDown) {
        // Let Qt point its record at what is under the pointer now, dispatching the
        // crossings it knows of; as if the pointer had moved, without moving it.
        const QPointF local = handle->mapFromGlobal(global);
        QMouseEvent move(QEvent::MouseMove, local, local, global, Qt::NoButton, Qt::NoButton,
                         QGuiApplication::keyboardModifiers());
        QCoreApplication::sendEvent(handle, &move);
        if (!guard)
            return true;
    }

    // What Qt could not tell: widgets that still count as hovered though the pointer
    // left them while it stood still (or while a popup held it), and widgets it came
    // to lie over without a crossing.
    QVector<QPointer<QWidget>> stale;
    CollectStale(strip, path, &stale);
    if (path.isEmpty() && strip->testAttribute(Qt::WA_UnderMouse))
        stale.append(strip);
    for (const QPointer<QWidget> &widget : qAsConst(stale)) {
        if (widget && widget->testAttribute(Qt::WA_UnderMouse))
            SendLeave(widget, global);
    }
    if (buttonDown)
        return false;
    const QVector<QPointer<QWidget>> entered(path.cbegin(), path.cend());
    for (const QPointer<QWidget> &widget : entered) {
        if (widget && !widget->testAttribute(Qt::WA_UnderMouse))
            SendEnter(widget, global);
    }
    return true;
}

} // namespace TabPointer
