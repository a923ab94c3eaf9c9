// SPDX-License-Identifier: MIT
#pragma once

#include <KelTabContainer/tabcontainer.h>

#include <QPointer>

class QPlainTextEdit;

/**
 * A plug-in tab: the demo's "Notes" plug-in, a scratch pad kept while the tab is
 * open. Plug-in tabs are found by their code, so opening Notes twice shows one tab.
 */
class PluginPage : public TabContainer
{
public:
    explicit PluginPage(TabDataPtr tab);
    ~PluginPage() override;

    QWidget *GetWidget() override;
    void OnActivated() override;
    void OnDeactivated() override;
    QString GetPageName() override;
    bool TryToClose(bool force) override;
    void SetFocus() override;

private:
    QPointer<QWidget> m_widget;
    QPlainTextEdit *m_editor = nullptr;
};
