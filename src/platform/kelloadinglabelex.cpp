// SPDX-License-Identifier: MIT
#include "kelloadinglabelex.h"

#include <QPainter>
#include <QTimer>

namespace {
constexpr int kAngleStep = 12; // 30 steps a turn: smooth at 25 ms a step
}

KelLoadingLabelEx::KelLoadingLabelEx(QWidget *parent)
    : QLabel(parent)
    , m_timer(new QTimer(this))
{
    connect(m_timer, &QTimer::timeout, this, &KelLoadingLabelEx::Advance);
}

KelLoadingLabelEx::~KelLoadingLabelEx() = default;

void KelLoadingLabelEx::SetImage(const QString &path)
{
    m_image = QPixmap(path);
    update();
}

QPixmap KelLoadingLabelEx::Image() const
{
    return m_image;
}

void KelLoadingLabelEx::StartAnimation(int intervalMs)
{
    m_timer->start(qMax(1, intervalMs));
}

void KelLoadingLabelEx::StopAnimation()
{
    m_timer->stop();
    if (m_angle != 0) {
        m_angle = 0;
        update();
    }
}

bool KelLoadingLabelEx::IsAnimating() const
{
    return m_timer->isActive();
}

int KelLoadingLabelEx::Angle() const
{
    return m_angle;
}

int KelLoadingLabelEx::Interval() const
{
    return m_timer->interval();
}

int KelLoadingLabelEx::AngleStep()
{
    return kAngleStep;
}

void KelLoadingLabelEx::Advance()
{
    m_angle = (m_angle + kAngleStep) % 360;
    if (isVisible())
        update();
}

void KelLoadingLabelEx::paintEvent(QPaintEvent *event)
{
    if (m_image.isNull()) {
        QLabel::paintEvent(event);
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF target = contentsRect();
    painter.translate(target.center());
    painter.rotate(m_angle);
    painter.translate(-target.center());
    painter.drawPixmap(target, m_image, QRectF(m_image.rect()));
}
