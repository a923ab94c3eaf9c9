// SPDX-License-Identifier: MIT
#pragma once

// The private class of BrowserTabBar: the classic strip's widths, placement, new-tab
// button and drag. Not part of the installed API.

#include "browsertabbarbase_p.h"
#include "browsertabbar.h"
#include "browsertabbuttonbg.h"

class BrowserTabButton;
class KelPushButtonHover;
class QFrame;

class BrowserTabBarPrivate : public BrowserTabBarBasePrivate
{
    Q_DECLARE_PUBLIC(BrowserTabBar)
public:
    BrowserTabBarPrivate();
    ~BrowserTabBarPrivate() override;

    void Init();

    QFrame *contentWidget = nullptr;      // holds the tab buttons; its width is the strip's
    KelPushButtonHover *newTabButton = nullptr;
    bool showNewTabButton = true;         // cleared for good by HideNewTabButton()
    bool closeButtonsShown = false;       // buttonWidth was above NoCloseButtonWidth at the last sizing
    BrowserTabButtonBg buttonBg;          // one background cache for all buttons: they share a width

    BrowserTabButton *Button(int index) const;
    void InitContent();
    void ComputeButtonWidth(int available);
    void SizeButtons();
    void ResizeButtons();
    void ResizeLastButtons();
    void ResetButtons();
    void SetContentWidth();
    void SortButtons();
    /**
     * After a switch from @p previous that left the stack as a switch does, puts the
     * previous tab back in its place and returns true; false for any other stack.
     */
    bool RestackAfterSwitch(int previous);

    BrowserTabButtonBase *CreateButton(const TabDataPtr &tab, const QString &iconPath, bool loading) override;
    void Relayout() override;
    void LayoutAfterRemoval() override;
    void CurrentTabChanged(int previous) override;
    void LayoutAfterMove() override;
    int NextCurrentOnRemoval(int index) override;
    QString PluginIconUrl(const QString &pluginCode) override;
    void BuildMenu(KelMenu *menu) override;
    void PrepareMenu(const TabDataPtr &tab) override;
    void AdjustForDpi() override;
    bool BeginPress(BrowserTabButtonBase *button, const QPoint &globalPos) override;
    void DragTo(const QPoint &globalPos) override;
    void EndPress(BrowserTabButtonBase *button) override;
    void DragAbandoned() override;
    QList<QWidget *> AccessibleControls() const override;
    int TabOverlap() const override;
};
