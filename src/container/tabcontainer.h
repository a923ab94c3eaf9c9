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
 */
class KELTABCONTAINER_EXPORT TabContainer
{
public:
    TabContainer();
    TabContainer(const TabContainer &other);
    TabContainer &operator=(const TabContainer &other);
    virtual ~TabContainer();

    /**
     * Sets the page's record. When the page already has one and @p data is not null,
     * the contents of @p data are copied into the existing record, so every holder of
     * the old pointer (the tab button, for example) sees the new values. Otherwise the
     * page's pointer is replaced: a null @p data clears it.
     */
    virtual void SetTabData(TabDataPtr data);
    virtual TabDataPtr GetTabData();
    virtual void OpenUrl(const QString &url);
    virtual void ReloadUrl(const QString &url);
    virtual void Reload(TabDataPtr data);
    virtual QString GetOpenUrl();
    virtual QString GetOpenRouter();
    /** "default" unless the page names itself. */
    virtual QString GetPageName();
    virtual QString GetHelpData();
    /** The record's title; empty without a record. */
    virtual QString GetTitle();
    /** The tab became current: the page shows its widget and resumes its work. */
    virtual void OnActivated() = 0;
    /** Another tab became current: the page may hide its widget and pause its work. */
    virtual void OnDeactivated() = 0;
    virtual void ActionForward();
    virtual void ActionBack();
    virtual void ActionRefresh();
    virtual void ActionRefreshNoCache();
    virtual void ActionStop();
    virtual bool GetRefreshEnabled();
    virtual bool GetForwardEnabled();
    virtual bool GetBackEnabled();
    virtual bool GetIsLoading();
    virtual bool ShowDevTools();
    virtual bool ShowFindDlg();
    virtual void ExitFullscreen();
    virtual void ZoomOut();
    virtual void ZoomIn();
    virtual void ZoomDefault();
    /** Gives keyboard focus to GetWidget() (Qt::OtherFocusReason); does nothing when it is null. */
    virtual void SetFocus();
    /** Asks the page to close; @return true when it may close now. The default refuses. */
    virtual bool TryToClose(bool force);
    virtual void AttachWebView(ICefWebView *webView);
    virtual ICefWebWidget *GetWebKernal();
    /** The widget that shows the page. */
    virtual QWidget *GetWidget() = 0;
    virtual void SetCloseable(bool closeable);
    virtual bool IsCloseable() const;
    virtual void SetCloseDisableDesc(const QString &desc);
    virtual QString CloseDisableDesc();

    bool GetReloadInTab() const;
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
