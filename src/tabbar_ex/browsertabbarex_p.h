#pragma once

// The private record of BrowserTabBarEx. Not part of the installed API.

#include "browsertabbarex.h"

#include <QList>
#include <QPoint>
#include <QPointer>
#include <QTimer>

#include <memory>

class BrowserTabArrowEx;
class BrowserTabButtonEx;
class BrowserTabMoveProxyEx;
class ITabManager;
class KelMenu;
class QAction;
class QFrame;

class BrowserTabBarExPrivate
{
public:
    explicit BrowserTabBarExPrivate(BrowserTabBarEx *owner);
    ~BrowserTabBarExPrivate();

    BrowserTabBarExPrivate(const BrowserTabBarExPrivate &) = delete;
    BrowserTabBarExPrivate &operator=(const BrowserTabBarExPrivate &) = delete;

    BrowserTabBarEx *const q;

    // Closing mode: the tabs keep their widths under the mouse after a close-button
    // click until the pointer leaves the bar and the delay timer has run.
    bool closing = false;
    bool closedLast = false;      // the tab closed in closing mode was the rightmost
    bool dragging = false;        // a pressed button has moved and floats in the viewport
    bool overflow = false;        // the scrolling tabs do not fit; arrows shown
    bool keepCurrentWide = false; // the current tab keeps the maximum width
    bool endingDrag = false;      // TabButtonMoved() runs, inside the popup's hide

    int currentIndex = -1;
    int firstIndex = 0;     // lowest index a dragged tab may take
    int menuIndex = -1;     // tab whose context menu was opened last
    int buttonWidth = 0;    // every scrolling tab
    int currentButtonWidth = 0;
    int scrollOffset = 0;   // content strip's x in the viewport, minOffset..0
    int animationStart = 0;
    int animationTarget = 0;
    int animationStep = 0;
    int extraPixels = 0;    // closing mode: tabs that get one pixel more
    QPoint pressOffset;     // drag: button x in the viewport minus cursor x; button y

    // Members of the record, not children of the bar: they are stopped and gone
    // before the bar's widgets are torn down, so no tick reaches a half-destroyed bar.
    QTimer arrowTimer;      // 20 ms, repeating: the animated scroll
    QTimer delayTimer;      // 200 ms, single-shot: the end of closing mode

    KelMenu *menu = nullptr;
    bool menuRunning = false;       // the menu's modal loop is under way
    QAction *upperSeparator = nullptr;
    QAction *recoverySeparator = nullptr;
    QAction *refreshAction = nullptr;
    QAction *addFavAction = nullptr;
    QAction *copyLinkAction = nullptr;
    QAction *openInBrowserAction = nullptr;
    QAction *closeCurAction = nullptr;
    QAction *closeOtherAction = nullptr;
    QAction *closeRightAction = nullptr;
    QAction *closeLeftAction = nullptr;
    QAction *recoveryAction = nullptr;

    ITabManager *tabManager = nullptr;

    QFrame *leftArrowFrame = nullptr;
    QFrame *rightArrowFrame = nullptr;
    BrowserTabArrowEx *leftArrow = nullptr;
    BrowserTabArrowEx *rightArrow = nullptr;
    QFrame *leftShadow = nullptr;
    QFrame *rightShadow = nullptr;
    QFrame *fixedArea = nullptr;
    QFrame *viewport = nullptr;
    QFrame *contentStrip = nullptr;

    // Guarded: a host may delete a button behind the bar's back.
    QPointer<BrowserTabButtonEx> pressedButton;
    // A parentless popup; the bar owns it.
    std::unique_ptr<BrowserTabMoveProxyEx> moveProxy;
    // One per tab; list position = tab index.
    QList<BrowserTabButtonEx *> buttons;
    // Buttons removed while the menu runs. The menu's loop would delete them at once,
    // and one of them may be the button whose right press opened the menu and whose
    // event handler is still on the stack; they go once the menu has returned.
    QList<QPointer<BrowserTabButtonEx>> retiredButtons;

    int Count() const { return buttons.size(); }
    bool IsValidIndex(int index) const { return index >= 0 && index < buttons.size(); }
};
