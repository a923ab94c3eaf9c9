// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabdata.h"

#include <QObject>
#include <QUrl>

/**
 * Process-wide hub through which pages announce changes of their tab (loading,
 * title, icon, address, navigation state, zoom, full screen) and ask for their tab
 * to be closed, without senders and listeners knowing each other.
 *
 * It has signals only. The library neither emits nor connects to them: the host's
 * pages emit, the host's window listens. Listeners in other threads receive the
 * signals queued (TabDataPtr is a registered meta-type).
 *
 * Instance() and ReleaseInstance() belong to the GUI thread like everything else:
 * called from another thread they print a warning and refuse (Instance() returns
 * null). ReleaseInstance() may be called from a destructor that it sets off.
 */
class KELTABCONTAINER_EXPORT BrowserMainNotify : public QObject
{
    Q_OBJECT
public:
    /** The single instance, created on first use; null (with a warning) off the GUI thread. */
    static BrowserMainNotify *Instance();
    /**
     * Destroys the instance, if any; connections to it go with it. A later Instance()
     * creates a fresh object, so release the hub only at shutdown.
     */
    static void ReleaseInstance();

Q_SIGNALS:
    void SigLoadStart(TabDataPtr data);
    void SigLoadFinished(TabDataPtr data);
    void SigWebTitleChanged(TabDataPtr tabData, const QString &strTitle);
    void SigWebIconChanged(TabDataPtr tabData, const QString &strIconPath);
    void SigCloseTab(TabDataPtr tabData);
    void SigWebStatusChanged(TabDataPtr data, bool isLoading, bool canGoBack, bool canGoForward);
    void SigAddressChanged(TabDataPtr data, const QUrl &url);
    void SigGetZoomPercent(TabDataPtr tabData, double zoomPercent, bool isMax, bool isMin);
    void SigFullscreenChanged(bool fullscreen);

private:
    BrowserMainNotify();
    ~BrowserMainNotify() override;
};
