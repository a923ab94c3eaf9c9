#pragma once

#include "browsertabbuttonbg.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QWidget>

#include <memory>

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
    bool closeButtonsShown = false; // buttonWidth was above NoCloseButtonWidth at the last sizing
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

    // The menu runs inside the press handler of the tab that was right-clicked, and
    // Qt sends that tab a context-menu event after the handler returns; the menu
    // itself still runs code after a command's signal. Whatever a menu command
    // removes must therefore outlive the menu: removed tabs wait here, and if the
    // bar itself is destroyed, its strip of tabs and its menu wait in menuGrave,
    // which the menu's caller deletes once the menu has returned.
    QList<QPointer<BrowserTabButton>> parkedButtons;
    std::shared_ptr<QList<QPointer<QWidget>>> menuGrave;
};
