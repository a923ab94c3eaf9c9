#pragma once

#include "tabdata.h"

#include <QMetaObject>
#include <QPointer>
#include <QString>

class BrowserTabBar;
class KelLabel;
class KelLoadingLabelEx;
class KelPushButton;
class QFrame;

/** The state of one BrowserTabButton; its widgets are children of the button. */
class BrowserTabButtonPrivate
{
public:
    bool checked = false;
    bool pressed = false;
    bool loading = false;
    bool hovered = false;

    QFrame *homePage = nullptr;
    QFrame *content = nullptr;
    KelPushButton *icon = nullptr;
    KelLoadingLabelEx *loadingLabel = nullptr;
    KelLabel *title = nullptr;
    KelPushButton *closeButton = nullptr;

    QPointer<BrowserTabBar> bar;
    TabDataPtr tabData;
    QString requestedIconUrl;
    QString iconPath;
    // What the icon button shows, so that a layout pass does not restyle it again.
    bool iconShown = false;
    QString shownIconPath;
    // The pending icon request; only the answer to the last URL asked for counts.
    QMetaObject::Connection iconConnection;
};
