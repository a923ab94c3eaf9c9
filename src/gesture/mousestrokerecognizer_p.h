// SPDX-License-Identifier: MIT
#pragma once

// Internal to the library: the incremental segmentation behind MouseStrokeRecognizer.

#include <QPoint>
#include <QStringList>
#include <QVector>

/**
 * Cuts a pointer path into four-direction runs, one point at a time, at a cost that
 * does not grow with the length of the path: only the last run can still change, so
 * the directions of all runs before it are kept ready.
 */
class StrokeTracker
{
public:
    /** Smallest minimum length accepted: below it, sampling would see every jitter. */
    static constexpr int kSmallestMinimum = 4;

    explicit StrokeTracker(int minimumSegmentLength = 20);

    /** Starts a new path at @p point. */
    void Start(const QPoint &point);
    /**
     * Extends the path to @p point; movements shorter than the sampling step wait
     * for the next point. @return true when Codes() changed.
     */
    bool AddPoint(const QPoint &point);
    /**
     * Ends the path at @p point, counting the last movement however short it is, so
     * that a stroke of exactly the minimum length counts. @return true when Codes()
     * changed.
     */
    bool Finish(const QPoint &point);
    /** @return the directions recognised so far. */
    QStringList Codes() const;

private:
    // Far beyond any pointer path, far below where adding one more step of at
    // most 2^32 could overflow.
    static constexpr qint64 kLongestRun = qint64(1) << 40;

    struct Run
    {
        QChar direction;
        qint64 length = 0;
    };

    void Commit(const Run &run);
    bool Extend(const QPoint &point, int threshold);

    int m_minimum;
    int m_step;
    QPoint m_anchor;
    bool m_hasRun = false;
    Run m_last;              // the run that may still grow
    QStringList m_committed; // directions of the finished runs, already merged
};
