// SPDX-License-Identifier: MIT
#pragma once

#include "kelmousegesture.h"
#include "keltabcontainer_export.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QStringList>

class GestureToast;
class IGestureHandlerDelegate;

/**
 * Turns recognised mouse strokes into browser actions.
 *
 * A stroke arrives as a list of direction codes ("L", "R", "U", "D"); the codes are
 * joined and must spell one of the eleven shapes exactly ("L" "R" "U" "D" "DR" "RU"
 * "RD" "LU" "UL" "UR" "RL"). The action bound to the shape in
 * KelMouseGesture::GetGestureMap() is shown in a GestureToast while the stroke is
 * drawn (when the gesture tip is on) and performed when it ends: tab and navigation
 * actions through the host's IGestureHandlerDelegate, Page Up / Page Down by injecting
 * the key into the focused window (VosKeyInjector). Every performed shape, including
 * one bound to BrowserActionInvalid, is reported to IMonitorSystem as the event
 * "Start_SystemSetting_GestureFunction" of plugin "kel_webpage" with the action's
 * display text.
 *
 * The handler does not look at the gestures switch: the stroke recogniser (or the
 * host) does not call it when gestures are off.
 *
 * Without a delegate the handler still does what needs no host: Page Up / Page Down
 * are injected and every performed shape is reported; the toast (which needs the
 * delegate's area) and the delegate's actions are left out.
 *
 * GUI thread only.
 *
 * @ingroup gestures
 */
class KELTABCONTAINER_EXPORT BrowserGestureHandler : public QObject
{
    Q_OBJECT
public:
    /** A handler without a delegate; its toast is made when first needed. */
    explicit BrowserGestureHandler(QObject *parent = nullptr);
    /** Deletes its toast (left to the process when the application object is already gone). */
    ~BrowserGestureHandler() override;

    /** Uses @p delegate (not owned) from now on; null leaves only what needs no host. */
    void SetGestureHandlerDelegate(IGestureHandlerDelegate *delegate);

    /**
     * A stroke is being drawn; @p codes are its directions so far. Shows the bound
     * action's text in the toast, centred on the delegate's GetToastArea(), or the
     * text of "Invalid action" for a shape that is unknown or unbound.
     * @note Shows nothing while the gesture tip is off.
     */
    void HandleGestureMoving(const QStringList &codes);
    /**
     * The stroke ended with the directions @p codes: hides the toast, performs the
     * bound action and reports it. An unknown or unbound shape does nothing.
     */
    void HandleGestureEvent(const QStringList &codes);

private Q_SLOTS:
    void SlotMouseGestureUpdate();

private:
    void ShowToast(const QString &text);
    void HideToast();
    static void RunHostAction(IGestureHandlerDelegate *delegate, EBrowserAction action);
    static void ReportGesture(const QString &actionText);
    void InitConnectSignals();

    IGestureHandlerDelegate *m_delegate = nullptr;
    QMap<QString, EMouseGestureDirection> m_codeTable;
    QPointer<GestureToast> m_toast;
    bool m_tipEnabled = true;
};
