// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QPushButton>
#include <QTimer>

#include <memory>

class BrowserTabArrowProxyEx;

/**
 * A scroll arrow of BrowserTabBarEx.
 *
 * A click reports clicked() as any push button does. Holding the left button for
 * 500 ms shows an invisible popup (BrowserTabArrowProxyEx) that takes the mouse and
 * reports SigPressed(); the release then goes to the popup, so no clicked() follows,
 * and SigReleased() reports the end of the hold. A left double click reports
 * SigDoubleClicked() (in addition to what the push button does with the clicks).
 *
 * The look comes from the style sheet through the object name the bar gives it
 * ("TabButtonLeftArrowEx" or "TabButtonRightArrowEx").
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabArrowEx : public QPushButton
{
    Q_OBJECT
public:
    /** An arrow with its hold timer and popup; the bar names it and sets its look. */
    explicit BrowserTabArrowEx(QWidget *parent = nullptr);
    /** Stops the hold timer and deletes the popup without reporting SigReleased(). */
    ~BrowserTabArrowEx() override;

    /** How long the left button must be held before the hold begins, in milliseconds (500). */
    static int HoldDelay();
    /** True while a hold is under way (the popup is shown and has the mouse). */
    bool IsHolding() const;

Q_SIGNALS:
    /** The left button has been held for HoldDelay() ms; the popup now has the mouse. */
    void SigPressed();
    /** A hold has ended. @note Not emitted for a short press, nor when the arrow is destroyed. */
    void SigReleased();
    /** A left double click. */
    void SigDoubleClicked();

protected:
    /** A left press starts the HoldDelay() timer; the push button then handles the press. */
    void mousePressEvent(QMouseEvent *event) override;
    /** A left release before the hold began stops the timer; the push button then reports its click. */
    void mouseReleaseEvent(QMouseEvent *event) override;
    /** A left double click emits SigDoubleClicked(); the push button then handles it as usual. */
    void mouseDoubleClickEvent(QMouseEvent *event) override;

private:
    void HoldTimeout();
    void ProxyReleased();

    std::unique_ptr<BrowserTabArrowProxyEx> m_proxy;
    QTimer m_pressTimer;
};
