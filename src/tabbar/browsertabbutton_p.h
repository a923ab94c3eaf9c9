// SPDX-License-Identifier: MIT
#pragma once

// The private class of BrowserTabButton. Not part of the installed API.

#include "browsertabbuttonbase_p.h"
#include "browsertabbutton.h"

#include <QString>

class BrowserTabBar;
class KelLabel;
class KelLoadingLabelEx;
class KelPushButton;
class QFrame;

class BrowserTabButtonPrivate : public BrowserTabButtonBasePrivate
{
    Q_DECLARE_PUBLIC(BrowserTabButton)
public:
    BrowserTabButtonPrivate();
    ~BrowserTabButtonPrivate() override;

    // The form; every widget is a child of the button.
    QFrame *homePage = nullptr;
    QFrame *content = nullptr;
    KelPushButton *icon = nullptr;
    KelLoadingLabelEx *loadingLabel = nullptr;
    KelLabel *title = nullptr;
    KelPushButton *closeButton = nullptr;
    // What the icon button shows, so that a layout pass does not restyle it again.
    bool iconShownOnce = false;
    QString shownIconPath;

    BrowserTabBar *Bar() const;
    void InitForm();
    void InitButton();
    void UpdateTextGeometry();
    void SetStyleName(const QString &name);

    void SetTitle(const QString &title) override;
    void SetChecked(bool checked) override;
    void LoadStart() override;
    void LoadFinished() override;
    void UpdateIcon() override;
};
