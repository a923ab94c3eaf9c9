// SPDX-License-Identifier: MIT
#pragma once

#include <KelTabContainer/tabcontainer.h>

#include <QPointer>

class ITabManager;
class QLineEdit;

/**
 * The page of the fixed home tab: a search field and tiles that open pages in new
 * tabs through the window's ITabManager, the way a host's own pages reach the tabs
 * without knowing the window.
 */
class HomePage : public TabContainer
{
public:
    /** @param tabs the window, asked to open tabs (not owned) */
    HomePage(TabDataPtr tab, ITabManager *tabs);
    ~HomePage() override;

    QWidget *GetWidget() override;
    void OnActivated() override;
    void OnDeactivated() override;
    QString GetPageName() override;
    void SetFocus() override;

private:
    QWidget *MakeTile(const QString &title, const QString &icon, TabDataPtr (*make)(const QString &),
                      const QString &argument);
    void Open(TabDataPtr tab);

    QPointer<QWidget> m_widget;
    QLineEdit *m_search = nullptr;
    ITabManager *m_tabs;
};
