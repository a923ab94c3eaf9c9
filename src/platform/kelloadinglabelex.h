// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QLabel>
#include <QPixmap>

class QTimer;

/**
 * Shows one image turning round its centre, for a page that is loading.
 *
 * StartAnimation() turns the image by AngleStep() degrees every interval;
 * StopAnimation() stops the timer and puts the image upright. No timer runs
 * while the animation is stopped, and a hidden label does not repaint.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelLoadingLabelEx : public QLabel
{
    Q_OBJECT
public:
    /** A label without an image and without a running animation. */
    explicit KelLoadingLabelEx(QWidget *parent = nullptr);
    /** Stops the animation with the label. */
    ~KelLoadingLabelEx() override;

    /** Loads the image to animate from @p path (a file or a ":/" resource). */
    void SetImage(const QString &path);
    /** @return the image set with SetImage(); null before, or when the file could not be read. */
    QPixmap Image() const;

    /** Starts (or restarts with the new interval) the rotation; an interval <= 0 is taken as 1 ms. */
    void StartAnimation(int intervalMs);
    /** Stops the rotation and puts the image upright; harmless when stopped already. */
    void StopAnimation();

    /** @return true between StartAnimation() and StopAnimation(). */
    bool IsAnimating() const;
    /** Current rotation in degrees, 0 to 359. */
    int Angle() const;
    /** @return the interval of the rotation in milliseconds, as last started. */
    int Interval() const;
    /** @return the degrees the image turns each interval (12, so 30 steps a turn). */
    static int AngleStep();

protected:
    /** Draws the image turned by Angle() round the label's centre; without an image, paints as a QLabel. */
    void paintEvent(QPaintEvent *event) override;

private:
    void Advance();

    QTimer *m_timer;
    QPixmap m_image;
    int m_angle = 0;
};
