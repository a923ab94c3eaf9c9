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
 *
 * @ingroup pages
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
    /**
     * A page emits it when the page of @p data starts loading; the window answers with
     * BrowserTabBarBase::LoadStart() for that tab's index.
     */
    void SigLoadStart(TabDataPtr data);
    /**
     * A page emits it when the page of @p data has finished loading, successfully or
     * not; the window answers with BrowserTabBarBase::LoadFinished().
     */
    void SigLoadFinished(TabDataPtr data);
    /**
     * A page emits it when the title of the page of @p tabData changed to @p strTitle;
     * the window answers with BrowserTabBarBase::setTabText().
     */
    void SigWebTitleChanged(TabDataPtr tabData, const QString &strTitle);
    /**
     * A page emits it when the page of @p tabData has a new icon, @p strIconPath (a local
     * file, a ":/" resource or an http(s) address); the window answers with
     * BrowserTabBarBase::setTabIcon().
     */
    void SigWebIconChanged(TabDataPtr tabData, const QString &strIconPath);
    /**
     * A page emits it to ask that its tab, @p tabData, be closed (for example when a
     * script closes the window); the window closes it as if the bar had asked.
     */
    void SigCloseTab(TabDataPtr tabData);
    /**
     * A page emits it when its navigation state changed, for the host's navigation bar.
     * @param data         the page's record
     * @param isLoading    the page is loading
     * @param canGoBack    there is a page to go back to
     * @param canGoForward there is a page to go forward to
     */
    void SigWebStatusChanged(TabDataPtr data, bool isLoading, bool canGoBack, bool canGoForward);
    /** A page emits it when the page of @p data now shows @p url, for the host's address bar. */
    void SigAddressChanged(TabDataPtr data, const QUrl &url);
    /**
     * A page emits it when its zoom changed, or when asked for it, for the host's zoom display.
     * @param tabData     the page's record
     * @param zoomPercent the zoom in percent (100 is unzoomed)
     * @param isMax       the page cannot zoom in further
     * @param isMin       the page cannot zoom out further
     */
    void SigGetZoomPercent(TabDataPtr tabData, double zoomPercent, bool isMax, bool isMin);
    /** A page emits it when it enters (true) or leaves (false) full screen; the window follows. */
    void SigFullscreenChanged(bool fullscreen);

private:
    BrowserMainNotify();
    ~BrowserMainNotify() override;
};
