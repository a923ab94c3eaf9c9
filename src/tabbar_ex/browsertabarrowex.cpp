// SPDX-License-Identifier: MIT
#include "browsertabarrowex.h"

#include "browsertabarrowproxyex.h"

#include <QMouseEvent>

namespace {
constexpr int kHoldDelayMs = 500;
}

BrowserTabArrowEx::BrowserTabArrowEx(QWidget *parent)
    : QPushButton(parent)
    , m_proxy(new BrowserTabArrowProxyEx(nullptr))
{
    setFocusPolicy(Qt::NoFocus);
    connect(m_proxy.get(), &BrowserTabArrowProxyEx::SigButtonRelease, this, &BrowserTabArrowEx::ProxyReleased);

    m_pressTimer.setInterval(kHoldDelayMs);
    m_pressTimer.setSingleShot(true);
    connect(&m_pressTimer, &QTimer::timeout, this, &BrowserTabArrowEx::HoldTimeout);
}

BrowserTabArrowEx::~BrowserTabArrowEx()
{
    m_pressTimer.stop();
    // The popup may be up (the arrow destroyed during a hold): it must neither call
    // back into this half-destroyed arrow nor outlive it as a stray window.
    disconnect(m_proxy.get(), nullptr, this, nullptr);
    m_proxy.reset();
}

int BrowserTabArrowEx::HoldDelay()
{
    return kHoldDelayMs;
}

bool BrowserTabArrowEx::IsHolding() const
{
    return m_proxy->isVisible();
}

void BrowserTabArrowEx::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_pressTimer.stop();
        m_pressTimer.start();
    }
    QPushButton::mousePressEvent(event);
}

void BrowserTabArrowEx::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_pressTimer.stop();
    QPushButton::mouseReleaseEvent(event);
}

void BrowserTabArrowEx::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        Q_EMIT SigDoubleClicked();
    QPushButton::mouseDoubleClickEvent(event);
}

void BrowserTabArrowEx::HoldTimeout()
{
    // A hold only makes sense on an arrow that can still scroll; a disabled arrow
    // gets no presses, but it may have been disabled while the timer ran.
    if (!isEnabled() || !isVisible())
        return;
    m_proxy->ShowFor(this);
    Q_EMIT SigPressed();
}

void BrowserTabArrowEx::ProxyReleased()
{
    // The release went to the popup, so the push button never saw it: without this it
    // would keep its pressed look until the next click.
    setDown(false);
    Q_EMIT SigReleased();
}
