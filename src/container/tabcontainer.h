// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"
#include "tabdata.h"
#include "tabmask.h"

#include <QPointer>
#include <QString>

class QWidget;
class ICefWebView;
class ICefWebWidget;

/**
 * Base class of the page that a tab shows.
 *
 * Every operation has a harmless default, so a page overrides only what it supports;
 * a page must provide GetWidget() and the two operations that put its widget into
 * and out of view (OnActivated(), OnDeactivated()). The class is neither a widget nor
 * a QObject: the page's widget is reached through GetWidget().
 *
 * Copies share the tab record and the mask widget: no second mask is made.
 *
 * ICefWebView and ICefWebWidget are the host's own web-engine types; the library only
 * declares them and passes pointers through.
 *
 * @ingroup pages
 */
class KELTABCONTAINER_EXPORT TabContainer
{
public:
    /** A page without a record, closeable, not reloading in its tab, without a mask. */
    TabContainer();
    /** A copy that shares @p other's record and mask (no second mask is made). */
    TabContainer(const TabContainer &other);
    /** Shares @p other's record and mask, and takes its flags and texts. */
    TabContainer &operator=(const TabContainer &other);
    /** Leaves the mask to the page's widget, which owns and deletes it. */
    virtual ~TabContainer();

    /**
     * Sets the page's record. When the page already has one and @p data is not null,
     * the contents of @p data are copied into the existing record, so every holder of
     * the old pointer (the tab button, for example) sees the new values. Otherwise the
     * page's pointer is replaced: a null @p data clears it.
     */
    virtual void SetTabData(TabDataPtr data);
    /** @return the page's record (shared with its tab), null before SetTabData(). */
    virtual TabDataPtr GetTabData();
    /** Opens @p url in this page. The default does nothing. */
    virtual void OpenUrl(const QString &url);
    /** Loads @p url again in this page, replacing what it shows. The default does nothing. */
    virtual void ReloadUrl(const QString &url);
    /** Shows the page of @p data again, in this page (see GetReloadInTab()). The default does nothing. */
    virtual void Reload(TabDataPtr data);
    /** @return the address the page was opened with. The default returns an empty string. */
    virtual QString GetOpenUrl();
    /** @return the host's route name for the page, if it uses one. The default returns an empty string. */
    virtual QString GetOpenRouter();
    /** "default" unless the page names itself. */
    virtual QString GetPageName();
    /** @return what the host's help needs to know about the page. The default returns an empty string. */
    virtual QString GetHelpData();
    /** The record's title; empty without a record. */
    virtual QString GetTitle();
    /** The tab became current: the page shows its widget and resumes its work. */
    virtual void OnActivated() = 0;
    /** Another tab became current: the page may hide its widget and pause its work. */
    virtual void OnDeactivated() = 0;
    /** Goes forward in the page's history. The default does nothing. */
    virtual void ActionForward();
    /** Goes back in the page's history. The default does nothing. */
    virtual void ActionBack();
    /** Reloads the page. The default does nothing. */
    virtual void ActionRefresh();
    /** Reloads the page bypassing any cache. The default does nothing. */
    virtual void ActionRefreshNoCache();
    /** Stops loading. The default does nothing. */
    virtual void ActionStop();
    /** @return whether reloading is possible now, for the host's toolbar. The default returns false. */
    virtual bool GetRefreshEnabled();
    /** @return whether there is a page to go forward to. The default returns false. */
    virtual bool GetForwardEnabled();
    /** @return whether there is a page to go back to. The default returns false. */
    virtual bool GetBackEnabled();
    /** @return whether the page is loading. The default returns false. */
    virtual bool GetIsLoading();
    /** Shows the page's developer tools; @return true when it did. The default returns false. */
    virtual bool ShowDevTools();
    /** Shows the page's find bar; @return true when it did. The default returns false. */
    virtual bool ShowFindDlg();
    /** Leaves full screen, if the page is in it. The default does nothing. */
    virtual void ExitFullscreen();
    /** Zooms out one step. The default does nothing. */
    virtual void ZoomOut();
    /** Zooms in one step. The default does nothing. */
    virtual void ZoomIn();
    /** Goes back to 100 % zoom. The default does nothing. */
    virtual void ZoomDefault();
    /** Gives keyboard focus to GetWidget() (Qt::OtherFocusReason); does nothing when it is null. */
    virtual void SetFocus();
    /** Asks the page to close; @return true when it may close now. The default refuses. */
    virtual bool TryToClose(bool force);
    /** Gives the page the host's web view to show. The default ignores it. */
    virtual void AttachWebView(ICefWebView *webView);
    /** @return the host's web-engine widget of the page. The default returns null. */
    virtual ICefWebWidget *GetWebKernal();
    /** The widget that shows the page. */
    virtual QWidget *GetWidget() = 0;
    /**
     * Marks whether the page may be closed now (true initially). The library only
     * stores it; the host consults it before answering a close request.
     */
    virtual void SetCloseable(bool closeable);
    /** @return the value last given to SetCloseable() (true initially). */
    virtual bool IsCloseable() const;
    /** Stores the text that tells the user why the page cannot close now; the host shows it. */
    virtual void SetCloseDisableDesc(const QString &desc);
    /** @return the text last given to SetCloseDisableDesc() (empty initially). */
    virtual QString CloseDisableDesc();

    /** @return whether a reload of this tab's page is shown in this page (false initially). */
    bool GetReloadInTab() const;
    /** Stores whether a reload is shown in this page rather than in a new one; the host decides what it means. */
    void SetReloadInTab(bool reloadInTab);

    /**
     * Lays @p widget over the page in a TabMask (see TabMask::SetMaskWidget() for the
     * flags). The mask is created at the first call as a child of GetWidget() and
     * reused afterwards, always resized to the page's current size and raised.
     * Does nothing while GetWidget() is null.
     */
    void ShowTabMask(QWidget *widget, bool blockInput, bool dimmed, QFlags<Qt::AlignmentFlag> alignment);
    /** The mask made by ShowTabMask(), or null. */
    TabMask *GetTabMask() const;

private:
    // Guarded: the page's widget owns the mask and may be gone before the page.
    QPointer<TabMask> m_mask;
    TabDataPtr m_tabData;
    bool m_reloadInTab;
    bool m_closeable;
    QString m_closeDisableDesc;
};
