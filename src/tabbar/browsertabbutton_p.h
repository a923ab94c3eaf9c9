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

    /** The private state of @p button (not null). */
    static BrowserTabButtonPrivate *get(BrowserTabButton *button) { return button->d_func(); }

    // The form; every widget is a child of the button. The home-page frame and the
    // loading animation are made at their first use (HomePage(), LoadingLabel()).
    QFrame *homePage = nullptr;
    QFrame *content = nullptr;
    KelPushButton *icon = nullptr;
    KelLoadingLabelEx *loadingLabel = nullptr;
    KelLabel *title = nullptr;
    KelPushButton *closeButton = nullptr;
    // What the icon button shows, so that a layout pass does not restyle it again.
    bool iconShownOnce = false;
    QString shownIconPath;
    QString shownIconName;

    BrowserTabBar *Bar() const;
    /** The bar's background for the button's width and state, mirrored right to left; null without a bar. */
    const QPixmap *Background() const;
    void InitFrame();
    void InitButton();
    /**
     * Makes the inner widgets; the button is without them (content is null) until then.
     * The bar keeps them only on the tabs in view, so that hundreds of tabs past the
     * strip's end cost one widget each instead of five.
     */
    void CreateForm();
    /** Makes the form, laid out and showing the button's state, or lets it go. */
    void ShowForm(bool shown);
    QFrame *HomePage();
    KelLoadingLabelEx *LoadingLabel();
    void UpdateTextGeometry();
    void SetStyleName(const QString &name);

    void SetTitle(const QString &title) override;
    void SetChecked(bool checked) override;
    void LoadStart() override;
    void LoadFinished() override;
    void UpdateIcon() override;
    /** Whether the close button shows by the button's state (not counting hover). */
    bool CloseButtonShownByState() const;
    bool CloseButtonMadeLater() const override;
    bool CloseButtonWouldShow() const override;
    QRect CloseButtonPlace() const override;
};
