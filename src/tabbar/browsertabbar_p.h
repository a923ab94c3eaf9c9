// SPDX-License-Identifier: MIT
#pragma once

// The private class of BrowserTabBar: the classic strip's widths, placement, new-tab
// button and drag. Not part of the installed API.

#include "browsertabbarbase_p.h"
#include "browsertabbar.h"
#include "browsertabbuttonbg.h"
#include "tabgeometry_p.h"

#include <QPixmap>

class BrowserTabButton;
class KelPushButtonHover;
class QFrame;

class BrowserTabBarPrivate : public BrowserTabBarBasePrivate
{
    Q_DECLARE_PUBLIC(BrowserTabBar)
public:
    BrowserTabBarPrivate();
    ~BrowserTabBarPrivate() override;

    /** The private state of @p bar (not null). */
    static BrowserTabBarPrivate *get(BrowserTabBar *bar) { return bar->d_func(); }

    void Init();

    QFrame *contentWidget = nullptr;      // holds the tab buttons; its width is the strip's
    KelPushButtonHover *newTabButton = nullptr;
    bool showNewTabButton = true;         // cleared for good by HideNewTabButton()
    bool closeButtonsShown = false;       // buttonWidth was above NoCloseButtonWidth at the last sizing
    // The painted backgrounds of the tabs. The movable tabs share one width, the first
    // extraPixels of them are a pixel wider, and fixed tabs have their own: the cache
    // builds for one width at a time, so the bar keeps what it built for the last few
    // widths (copies share the pixels). With the cache alone, painting the strip would
    // stretch the images again at every change between those widths, several times
    // per paint. Right to left the kept backgrounds are mirrored once, so that a paint
    // is a plain copy, not a transformed one.
    BrowserTabButtonBg buttonBg;
    struct Backgrounds
    {
        int width = 0;
        bool mirrored = false;
        QPixmap front, back, backHover;
        quint64 used = 0; // when it last served, so that the oldest makes room
    };
    static constexpr int kBackgroundWidths = 3;
    Backgrounds backgrounds[kBackgroundWidths];
    quint64 backgroundClock = 0;
    QPixmap *ButtonBg(int width, bool checked, bool hovered, bool mirrored = false);

    BrowserTabButton *Button(int index) const;
    void InitContent();
    void ComputeButtonWidth(int available);
    void SizeButtons();
    void ResizeButtons();
    void ResizeLastButtons();
    void ResetButtons();
    void SetContentWidth(TabGeometry::Places places = TabGeometry::Places::Keep);
    /** Gives the tabs in view their inner widgets and takes them from the others. */
    void UpdateButtonForms();
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
