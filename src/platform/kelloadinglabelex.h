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
 */
class KELTABCONTAINER_EXPORT KelLoadingLabelEx : public QLabel
{
    Q_OBJECT
public:
    explicit KelLoadingLabelEx(QWidget *parent = nullptr);
    ~KelLoadingLabelEx() override;

    /** Loads the image to animate from @p path (a file or a ":/" resource). */
    void SetImage(const QString &path);
    QPixmap Image() const;

    /** Starts (or restarts with the new interval) the rotation; an interval <= 0 is taken as 1 ms. */
    void StartAnimation(int intervalMs);
    void StopAnimation();

    bool IsAnimating() const;
    /** Current rotation in degrees, 0 to 359. */
    int Angle() const;
    int Interval() const;
    static int AngleStep();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void Advance();

    QTimer *m_timer;
    QPixmap m_image;
    int m_angle = 0;
};
