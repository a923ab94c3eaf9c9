#include "hometabbarex.h"

#include "closedtabstack.h"

HomeTabBarEx::HomeTabBarEx(const ClosedTabStack *closedTabs, QWidget *parent)
    : BrowserTabBarEx(parent)
    , m_closedTabs(closedTabs)
{
}

HomeTabBarEx::~HomeTabBarEx() = default;

int HomeTabBarEx::FixedTabCount()
{
    return HomeTabCount;
}

int HomeTabBarEx::FixedTabTotalWidth()
{
    return ButtonHomepageWidth();
}

QString HomeTabBarEx::GetCheckedIcon(QSharedPointer<TabData> tab)
{
    // Only pages that can reload offer the icon; a plug-in page has nothing to reload.
    if (tab && (tab->IsWeb() || tab->IsWebPopup()))
        return QStringLiteral(":/browser/icons/tab_reload.png");
    return QString();
}

QString HomeTabBarEx::GetPluginIconUrl(const QString &pluginCode) const
{
    Q_UNUSED(pluginCode)
    // The demo has a single plug-in.
    return QStringLiteral(":/browser/icons/page_notes.png");
}

void HomeTabBarEx::TabIconClicked(QSharedPointer<TabData> tab, QPoint globalPos)
{
    Q_UNUSED(globalPos)
    const int index = GetIndexByTabData(tab);
    if (index >= 0)
        Q_EMIT SigReloadIconClicked(index);
}

bool HomeTabBarEx::CheckCloseCurItem(int index)
{
    return index >= FixedTabCount();
}

bool HomeTabBarEx::CheckCloseOtherItem(int index)
{
    // The home tab stays: "others" are the closable tabs but the menu's own.
    const int closable = count() - FixedTabCount() - (index >= FixedTabCount() ? 1 : 0);
    return closable > 0;
}

bool HomeTabBarEx::CheckCloseLeftItem(int index)
{
    return index > FixedTabCount();
}

bool HomeTabBarEx::IsShowRecoveryItem()
{
    return true;
}

bool HomeTabBarEx::CheckRecoveryItem()
{
    return m_closedTabs && !m_closedTabs->IsEmpty();
}
