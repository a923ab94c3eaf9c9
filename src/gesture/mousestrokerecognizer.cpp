// SPDX-License-Identifier: MIT
#include "mousestrokerecognizer.h"

#include "browsergesturehandler.h"
#include "dpitool.h"
#include "eventpoint_p.h"
#include "kelmousegesture.h"
#include "mousestrokerecognizer_p.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <algorithm>

// ---------------------------------------------------------------------------
// StrokeTracker

StrokeTracker::StrokeTracker(int minimumSegmentLength)
    : m_minimum(std::max(minimumSegmentLength, kSmallestMinimum))
    // A quarter of the minimum: fine enough that a corner costs little of either
    // run, coarse enough that the hand's tremor rarely outweighs the real motion.
    , m_step(std::max(m_minimum / 4, 1))
{
}

void StrokeTracker::Start(const QPoint &point)
{
    m_anchor = point;
    m_hasRun = false;
    m_last = Run();
    m_committed.clear();
}

void StrokeTracker::Commit(const Run &run)
{
    // Short runs are corners and tremor; dropping them lets the runs on either side
    // meet, and runs of one direction that meet are one stroke.
    if (run.length < m_minimum)
        return;
    const QString direction(run.direction);
    if (m_committed.isEmpty() || m_committed.last() != direction)
        m_committed.append(direction);
}

bool StrokeTracker::AddPoint(const QPoint &point)
{
    return Extend(point, m_step);
}

bool StrokeTracker::Finish(const QPoint &point)
{
    return Extend(point, 1);
}

bool StrokeTracker::Extend(const QPoint &point, int threshold)
{
    // Positions come from the window system and from hosts (synthetic events,
    // screens far apart, scaled coordinates), so any two ints may meet here: the
    // difference of two of them needs 33 bits and its magnitude 32 unsigned bits,
    // which 64-bit arithmetic holds without overflow.
    const qint64 dx = qint64(point.x()) - qint64(m_anchor.x());
    const qint64 dy = qint64(point.y()) - qint64(m_anchor.y());
    const qint64 adx = dx < 0 ? -dx : dx;
    const qint64 ady = dy < 0 ? -dy : dy;
    if (std::max(adx, ady) < threshold)
        return false;

    QChar direction;
    if (adx >= ady)
        direction = dx > 0 ? QLatin1Char('R') : QLatin1Char('L');
    else
        direction = dy > 0 ? QLatin1Char('D') : QLatin1Char('U');
    const qint64 length = std::max(adx, ady);
    m_anchor = point;

    const QStringList before = Codes();
    if (m_hasRun && m_last.direction == direction) {
        // Saturates: a run past any screen is as long as it needs to be, and the sum
        // of many huge steps must not wrap round into a short one.
        m_last.length = std::min(m_last.length + length, kLongestRun);
    } else {
        if (m_hasRun)
            Commit(m_last);
        m_last.direction = direction;
        m_last.length = length;
        m_hasRun = true;
    }
    return Codes() != before;
}

QStringList StrokeTracker::Codes() const
{
    QStringList codes = m_committed;
    if (m_hasRun && m_last.length >= m_minimum) {
        const QString direction(m_last.direction);
        if (codes.isEmpty() || codes.last() != direction)
            codes.append(direction);
    }
    return codes;
}

// ---------------------------------------------------------------------------
// MouseStrokeRecognizer

class MouseStrokeRecognizer::Private
{
public:
    QPointer<QWidget> widget;
    QPointer<BrowserGestureHandler> handler;
    int minimumSegmentLength = 20;

    bool active = false;
    QPointer<QWidget> target;   // the widget under the press: it gets the context menu
    QPoint pressGlobal;
    Qt::KeyboardModifiers pressModifiers;
    StrokeTracker tracker;
    bool reportedMoving = false;

    // Set while we deliver our own context-menu request, so that the filter lets it by.
    bool delivering = false;
    // Set from a stroke's release until control returns to the event loop: platforms
    // that ask for a context menu on release do it right after the release event.
    bool swallowAfterRelease = false;

    bool InScope(QObject *object) const
    {
        if (!widget || !object || !object->isWidgetType())
            return false;
        for (const QWidget *w = static_cast<QWidget *>(object); w; w = w->parentWidget()) {
            if (w == widget)
                return true;
        }
        return false;
    }
};

MouseStrokeRecognizer::MouseStrokeRecognizer(QObject *parent)
    : QObject(parent)
    , d(new Private)
{
}

MouseStrokeRecognizer::~MouseStrokeRecognizer()
{
    if (QCoreApplication *app = QCoreApplication::instance())
        app->removeEventFilter(this);
}

void MouseStrokeRecognizer::Attach(QWidget *widget)
{
    if (d->active) {
        d->active = false;
        if (d->reportedMoving && d->handler)
            d->handler->HandleGestureEvent(QStringList());
    }
    d->widget = widget;
    QCoreApplication *app = QCoreApplication::instance();
    if (!app)
        return;
    // Application-wide: a press goes to the deepest child under the pointer, and a
    // web view creates children of its own long after it was attached.
    app->removeEventFilter(this);
    if (widget)
        app->installEventFilter(this);
}

QWidget *MouseStrokeRecognizer::AttachedWidget() const
{
    return d->widget;
}

void MouseStrokeRecognizer::SetGestureHandler(BrowserGestureHandler *handler)
{
    d->handler = handler;
}

BrowserGestureHandler *MouseStrokeRecognizer::GestureHandler() const
{
    return d->handler;
}

void MouseStrokeRecognizer::SetMinimumSegmentLength(int length)
{
    d->minimumSegmentLength = std::max(length, StrokeTracker::kSmallestMinimum);
}

int MouseStrokeRecognizer::MinimumSegmentLength() const
{
    return d->minimumSegmentLength;
}

bool MouseStrokeRecognizer::IsStrokeActive() const
{
    return d->active;
}

QStringList MouseStrokeRecognizer::RecognizeStroke(const QVector<QPoint> &points, int minimumSegmentLength)
{
    if (points.isEmpty())
        return QStringList();
    StrokeTracker tracker(minimumSegmentLength);
    tracker.Start(points.first());
    for (int i = 1; i < points.size(); ++i)
        tracker.AddPoint(points.at(i));
    tracker.Finish(points.last());
    return tracker.Codes();
}

bool MouseStrokeRecognizer::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (d->active) {
            // Another button joined in (that is no gesture any more), or a right press
            // whose release we never saw: the pending stroke ends without an action.
            d->active = false;
            if (d->reportedMoving && d->handler)
                d->handler->HandleGestureEvent(QStringList());
        }
        if (mouse->button() != Qt::RightButton || mouse->buttons() != Qt::RightButton || !d->InScope(watched))
            return false;
        if (!KelMouseGesture::Instance()->GetEnableGesture())
            return false;
        d->active = true;
        d->target = static_cast<QWidget *>(watched);
        d->pressGlobal = KelEventGlobalPos(mouse);
        d->pressModifiers = mouse->modifiers();
        d->reportedMoving = false;
        d->tracker = StrokeTracker(DpiTool::ScaleDefault(d->minimumSegmentLength));
        d->tracker.Start(d->pressGlobal);
        mouse->accept();
        return true;
    }
    case QEvent::MouseMove: {
        if (!d->active)
            return false;
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (!(mouse->buttons() & Qt::RightButton)) {
            // The release went somewhere we never saw (a popup, another
            // application): end the stroke quietly.
            d->active = false;
            if (d->reportedMoving && d->handler)
                d->handler->HandleGestureEvent(QStringList());
            return false;
        }
        if (d->tracker.AddPoint(KelEventGlobalPos(mouse))) {
            const QStringList codes = d->tracker.Codes();
            d->reportedMoving = true;
            const QPointer<MouseStrokeRecognizer> self(this);
            if (d->handler)
                d->handler->HandleGestureMoving(codes);
            if (self)
                emit SigStrokeChanged(codes);
        }
        mouse->accept();
        return true;
    }
    case QEvent::MouseButtonRelease: {
        auto *mouse = static_cast<QMouseEvent *>(event);
        if (!d->active || mouse->button() != Qt::RightButton)
            return false;
        d->active = false;
        d->tracker.Finish(KelEventGlobalPos(mouse));
        const QStringList codes = d->tracker.Codes();
        mouse->accept();

        d->swallowAfterRelease = true;
        QTimer::singleShot(0, this, [this] { d->swallowAfterRelease = false; });

        const QPointer<MouseStrokeRecognizer> self(this);
        if (codes.isEmpty()) {
            if (d->reportedMoving && d->handler)
                d->handler->HandleGestureEvent(QStringList());
            if (QWidget *target = d->target) {
                QContextMenuEvent request(QContextMenuEvent::Mouse, target->mapFromGlobal(d->pressGlobal),
                                          d->pressGlobal, d->pressModifiers);
                d->delivering = true;
                QCoreApplication::sendEvent(target, &request);
                if (self)
                    d->delivering = false;
            }
            return true;
        }
        if (d->handler)
            d->handler->HandleGestureEvent(codes);
        if (self)
            emit SigStrokeFinished(codes);
        return true;
    }
    case QEvent::ContextMenu: {
        if (d->delivering || static_cast<QContextMenuEvent *>(event)->reason() != QContextMenuEvent::Mouse)
            return false;
        // The platform's own request for the right button: the stroke decides
        // instead, and a plain click gets ours on release.
        if ((d->active || d->swallowAfterRelease) && d->InScope(watched)) {
            event->accept();
            return true;
        }
        return false;
    }
    default:
        return false;
    }
}
