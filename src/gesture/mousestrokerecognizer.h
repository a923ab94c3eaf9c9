// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QObject>
#include <QPoint>
#include <QStringList>
#include <QVector>

#include <memory>

class BrowserGestureHandler;
class QWidget;

/**
 * Recognises mouse gestures: strokes drawn with the right button held over a widget.
 *
 * Attach() a widget and give it a BrowserGestureHandler. A press of the right button
 * on the widget or any of its descendants starts a stroke (when
 * KelMouseGesture::GetEnableGesture() is on; otherwise the button behaves as usual).
 * While the button is held, the pointer's path is cut into segments:
 * - the path is sampled every quarter of the minimum segment length;
 * - each sample step is quantised to one of four directions, "L", "R", "U" or "D",
 *   by its larger axis;
 * - consecutive steps of one direction form a run; runs shorter than the minimum
 *   segment length are dropped, and runs of one direction that meet once the short
 *   runs are gone are merged.
 * Whenever the list of directions changes, it goes to the handler's
 * HandleGestureMoving(); when the button is released it goes to HandleGestureEvent().
 *
 * The press, the moves and the release of a stroke are consumed, so the widget never
 * sees a right-button drag. A right click that draws no direction at all (a plain
 * click, or a movement shorter than the minimum) reaches the widget as a
 * QContextMenuEvent (reason Mouse) at the press position, exactly once, whatever the
 * platform's own rule for context-menu requests; keyboard context-menu requests are
 * never touched.
 *
 * GUI thread only.
 *
 * @ingroup gestures
 */
class KELTABCONTAINER_EXPORT MouseStrokeRecognizer : public QObject
{
    Q_OBJECT
public:
    /** A recogniser that watches nothing and reports to no handler until Attach() and SetGestureHandler(). */
    explicit MouseStrokeRecognizer(QObject *parent = nullptr);
    /** Stops watching; a stroke in progress ends without a report. */
    ~MouseStrokeRecognizer() override;

    /**
     * Watches @p widget and its descendants from now on, instead of the widget
     * watched so far (a stroke in progress is cancelled). Null stops watching.
     */
    void Attach(QWidget *widget);
    /** @return the widget given to Attach(); null before, after Attach(nullptr), or once that widget is destroyed. */
    QWidget *AttachedWidget() const;

    /** Reports strokes to @p handler (not owned; null: signals only). */
    void SetGestureHandler(BrowserGestureHandler *handler);
    /** @return the handler given to SetGestureHandler(), or null. */
    BrowserGestureHandler *GestureHandler() const;

    /**
     * Sets the shortest run, in logical pixels at 96 dpi (scaled with DpiTool when a
     * stroke starts), that counts as a direction; values below 4 are raised to 4.
     * The default is 20.
     */
    void SetMinimumSegmentLength(int length);
    /** @return the shortest run that counts as a direction, in design pixels (20 unless set). */
    int MinimumSegmentLength() const;

    /** @return true between the right-button press that started a stroke and its release. */
    bool IsStrokeActive() const;

    /**
     * @return the directions of the path @p points (in one coordinate system, y
     * growing downwards), cut by the rules above with runs of at least
     * @p minimumSegmentLength pixels (values below 4 are raised to 4).
     */
    static QStringList RecognizeStroke(const QVector<QPoint> &points, int minimumSegmentLength);

Q_SIGNALS:
    /**
     * The directions of the stroke in progress changed to @p codes.
     * @note Not emitted for moves that do not change the list.
     */
    void SigStrokeChanged(const QStringList &codes);
    /**
     * A stroke ended with the directions @p codes.
     * @note Not emitted for a plain right click (no direction), nor for a stroke
     * cancelled by another button, by Attach() or by a release that never came.
     */
    void SigStrokeFinished(const QStringList &codes);

protected:
    /**
     * Follows right-button strokes on the attached widget and its descendants, while
     * KelMouseGesture::GetEnableGesture() is true; consumes their press, moves and
     * release as described above and lets every other event through.
     */
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    class Private;
    const std::unique_ptr<Private> d;
};
