// SPDX-License-Identifier: MIT
#include "tabcontainer.h"

#include <QWidget>

TabContainer::TabContainer()
    : m_reloadInTab(false)
    , m_closeable(true)
{
}

TabContainer::TabContainer(const TabContainer &other) = default;
TabContainer &TabContainer::operator=(const TabContainer &other) = default;

// The mask belongs to the page's widget, which deletes it.
TabContainer::~TabContainer() = default;

void TabContainer::SetTabData(TabDataPtr data)
{
    if (m_tabData && data) {
        *m_tabData = *data;
        return;
    }
    m_tabData = data;
}

TabDataPtr TabContainer::GetTabData() { return m_tabData; }
void TabContainer::OpenUrl(const QString &) {}
void TabContainer::ReloadUrl(const QString &) {}
void TabContainer::Reload(TabDataPtr) {}
QString TabContainer::GetOpenUrl() { return QString(); }
QString TabContainer::GetOpenRouter() { return QString(); }
QString TabContainer::GetPageName() { return QStringLiteral("default"); }
QString TabContainer::GetHelpData() { return QString(); }
QString TabContainer::GetTitle() { return m_tabData ? m_tabData->GetTitle() : QString(); }
void TabContainer::ActionForward() {}
void TabContainer::ActionBack() {}
void TabContainer::ActionRefresh() {}
void TabContainer::ActionRefreshNoCache() {}
void TabContainer::ActionStop() {}
bool TabContainer::GetRefreshEnabled() { return false; }
bool TabContainer::GetForwardEnabled() { return false; }
bool TabContainer::GetBackEnabled() { return false; }
bool TabContainer::GetIsLoading() { return false; }
bool TabContainer::ShowDevTools() { return false; }
bool TabContainer::ShowFindDlg() { return false; }
void TabContainer::ExitFullscreen() {}
void TabContainer::ZoomOut() {}
void TabContainer::ZoomIn() {}
void TabContainer::ZoomDefault() {}

void TabContainer::SetFocus()
{
    if (QWidget *widget = GetWidget())
        widget->setFocus(Qt::OtherFocusReason);
}

bool TabContainer::TryToClose(bool) { return false; }
void TabContainer::AttachWebView(ICefWebView *) {}
ICefWebWidget *TabContainer::GetWebKernal() { return nullptr; }
void TabContainer::SetCloseable(bool closeable) { m_closeable = closeable; }
bool TabContainer::IsCloseable() const { return m_closeable; }
void TabContainer::SetCloseDisableDesc(const QString &desc) { m_closeDisableDesc = desc; }
QString TabContainer::CloseDisableDesc() { return m_closeDisableDesc; }
bool TabContainer::GetReloadInTab() const { return m_reloadInTab; }
void TabContainer::SetReloadInTab(bool reloadInTab) { m_reloadInTab = reloadInTab; }

void TabContainer::ShowTabMask(QWidget *widget, bool blockInput, bool dimmed, QFlags<Qt::AlignmentFlag> alignment)
{
    QWidget *page = GetWidget();
    if (!page)
        return;
    if (!m_mask || m_mask->parentWidget() != page) {
        m_mask = new TabMask(page);
        page->installEventFilter(m_mask);
    }
    m_mask->setGeometry(page->rect());
    m_mask->show();
    m_mask->raise();
    m_mask->SetMaskWidget(widget, blockInput, dimmed, alignment);
}

TabMask *TabContainer::GetTabMask() const
{
    return m_mask;
}
