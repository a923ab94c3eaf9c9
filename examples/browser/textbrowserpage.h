// SPDX-License-Identifier: MIT
#pragma once

#include <KelTabContainer/tabcontainer.h>

#include <QPointer>
#include <QStringList>

class PageView;
class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

/**
 * A web tab: shows the demo's local HTML pages, and fetches http and https pages as
 * text. It stands in for the embedded browser a real host would use.
 *
 * Everything the window needs to know about the page (loading, title, icon, address,
 * whether it can go back or forward, zoom) is announced through BrowserMainNotify,
 * never reported to the window directly.
 *
 * A page starts empty: the window opens its first address with OpenUrl() once the
 * tab is in the bar, so that the bar hears the loading start. A new tab
 * (TabTypeNewTab) opens TabRecordFactory::NewTabPageUrl(); the first address opened
 * after it makes it a web tab.
 */
class TextBrowserPage : public TabContainer
{
public:
    /** @param network the window's access manager, used for http and https (not owned) */
    TextBrowserPage(TabDataPtr tab, QNetworkAccessManager *network);
    ~TextBrowserPage() override;

    QWidget *GetWidget() override;
    void OnActivated() override;
    void OnDeactivated() override;
    void OpenUrl(const QString &url) override;
    void ReloadUrl(const QString &url) override;
    void Reload(TabDataPtr data) override;
    QString GetOpenUrl() override;
    QString GetPageName() override;
    void ActionForward() override;
    void ActionBack() override;
    void ActionRefresh() override;
    void ActionRefreshNoCache() override;
    void ActionStop() override;
    bool GetRefreshEnabled() override;
    bool GetForwardEnabled() override;
    bool GetBackEnabled() override;
    bool GetIsLoading() override;
    void ZoomOut() override;
    void ZoomIn() override;
    void ZoomDefault() override;
    bool TryToClose(bool force) override;

    /** Selects the next (or previous) occurrence of @p text; @return false when there is none. */
    bool Find(const QString &text, bool backward);
    /** Scrolls to the top or to the bottom of the page. */
    void ScrollToEdge(bool top);

    /** How long a local page pretends to load, so that the tab's loading indicator shows. */
    static int LocalLoadMs();

private:
    void Navigate(const QString &url, bool addToHistory, bool noCache);
    void StartLocal(const QString &url);
    void StartRemote(const QString &url, bool noCache);
    void RemoteFinished(QNetworkReply *reply);
    void Finish(const QString &title, const QString &icon);
    void AbortLoading();
    void HideNotice();
    void AnnounceState();
    void AnnounceZoom();
    QString CurrentUrl() const;

    QPointer<PageView> m_view;
    QTimer *m_localTimer = nullptr;
    QNetworkAccessManager *m_network;
    QPointer<QNetworkReply> m_reply;
    QString m_pendingUrl;
    QStringList m_history;
    int m_historyIndex = -1;
    bool m_loading = false;
    int m_zoomSteps = 0;
};
