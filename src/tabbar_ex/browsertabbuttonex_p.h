// SPDX-License-Identifier: MIT
#pragma once

// The private class of BrowserTabButtonEx. Not part of the installed API.

#include "browsertabbuttonbase_p.h"
#include "browsertabbuttonex.h"

#include <QString>

#include <memory>

class BrowserTabBarEx;
class ElidedLabelEx;
class KelLoadingLabelEx;
class KelPushButton;
class QFrame;
class QPushButton;

class BrowserTabButtonExPrivate : public BrowserTabButtonBasePrivate
{
    Q_DECLARE_PUBLIC(BrowserTabButtonEx)
public:
    BrowserTabButtonExPrivate();
    ~BrowserTabButtonExPrivate() override;

    /** The private state of @p button (not null). */
    static BrowserTabButtonExPrivate *get(BrowserTabButtonEx *button) { return button->d_func(); }

    /** The button's inner widgets, all owned through Qt parenthood (the content frame is their parent). */
    struct Form
    {
        QFrame *content = nullptr;
        KelLoadingLabelEx *loading = nullptr;
        ElidedLabelEx *title = nullptr;
        KelPushButton *close = nullptr;
        QPushButton *icon = nullptr;

        void Create(BrowserTabButtonEx *button);
    };

    // The pointer is over the button while it is checked (also set by a left press):
    // only then may the checked icon be shown.
    bool checkedHover = false;
    // The inner widgets exist only while the bar shows the button: a strip of hundreds
    // of tabs keeps one widget per tab, not six. Every state change is kept in the
    // fields below and applied when the widgets are made.
    std::unique_ptr<Form> form;
    bool separatorShown = false;
    bool iconShown = true;
    bool loadingShown = false;
    bool closeShown = true;
    bool iconTakesMouse = false;
    QString iconName;
    QString iconStyleSheet;
    QString iconFile;
    // The file the icon button's QIcon was made from, so that an unchanged icon is not
    // loaded and re-polished again on every state change.
    QString shownIconFile;
    int titlePixelSize = 0; // the title font, as set at construction or by ApplyFont()

    BrowserTabBarEx *Bar() const;
    void Init();
    void InitButton();
    void CreateForm();
    void ReleaseForm();
    void ApplyFont();
    void SetStyleName(const QString &name);
    QString BackStyleName() const;
    void UpdateLayout();
    void UpdateTextGeometry();
    void UpdateTitle();
    void UpdateCloseButton();
    void ShowCustomIcon();
    void ShowDefaultIcon();
    void SetIconLook(const QString &name, const QString &styleSheet, const QString &file, bool takesMouse);
    void ApplyIconLook();
    void SetIconVisibility(bool iconVisible, bool loadingVisible);
    void SetSeparatorVisible(bool visible);

    void SetTitle(const QString &title) override;
    void SetChecked(bool checked) override;
    void SetPressed() override;
    void SetReleased() override;
    void LoadStart() override;
    void LoadFinished() override;
    void UpdateIcon() override;
    void LeftPressed() override;
    void DirectionChanged() override;
};
