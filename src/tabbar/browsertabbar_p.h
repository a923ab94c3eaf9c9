#pragma once

#include "browsertabbuttonbg.h"

#include <QList>
#include <QPoint>
#include <QPointer>

class BrowserTabBar;
class BrowserTabButton;
class BrowserTabMoveProxy;
class ITabManager;
class KelMenu;
class KelPushButtonHover;
class QFrame;
class QTimer;

/** The private state of BrowserTabBar. */
class BrowserTabBarPrivate
{
public:
    bool closedByMouse = false;  // a tab was closed by its close button since the last full fit
    bool closedLastTab = false;  // ... and it was the last tab
    bool dragStarted = false;    // the held tab has moved at least once
    int currentIndex = -1;
    int firstIndex = 0;
    int menuIndex = -1;          // the tab whose menu is (or was last) open
    int buttonWidth = 0;
    int extraPixels = 0;         // movable tabs, from the first, that are one pixel wider
    QPoint pressOffset;          // x: tab x minus pointer x at the press; y: tab y
    QPointer<KelMenu> menu;
    ITabManager *tabManager = nullptr;
    QFrame *contentWidget = nullptr;
    KelPushButtonHover *newTabButton = nullptr;
    QPointer<BrowserTabButton> movingButton;
    BrowserTabMoveProxy *moveProxy = nullptr; // parentless popup, deleted by the bar
    BrowserTabButtonBg buttonBg;
    QList<BrowserTabButton *> buttons;

    QTimer *relayoutTimer = nullptr;  // child of the bar: dies with it, never fires into a dead bar
    bool showNewTabButton = true;     // cleared for good by HideNewTabButton()
    bool menuOpen = false;            // a menu request while the menu is open is ignored
};
