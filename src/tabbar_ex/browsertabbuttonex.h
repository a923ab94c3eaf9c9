#pragma once

#include "keltabcontainer_export.h"
#include "tabdata.h"

#include <QFrame>
#include <QPointer>

#include <memory>

class BrowserTabBarEx;
class QMouseEvent;

/**
 * One tab of BrowserTabBarEx: an icon (or a turning loading indicator), the elided
 * title and a close button.
 *
 * The button holds the tab's record, keeps its own look (current, hovered, dragged,
 * loading) and fetches web icons through VosImageCache. It never selects, closes or
 * moves a tab itself: it tells the bar through signals, and the bar drives it.
 *
 * Its look comes from style sheets keyed on object names, which the button switches
 * as its state changes: the button is "TabButtonFrontEx" (current), "TabButtonBackEx"
 * or "TabButtonBackExHover" (others) or "TabButtonPressedEx" (dragged); its content
 * frame is "TabButtonContentExWithSep" or "TabButtonContentExNoSep"; the icon button
 * is "TabButtonIconHomeEx", "TabButtonIconCustomEx", "TabButtonIconWebEx" or
 * "TabButtonIconDefaultEx". Names are switched, and widgets re-polished, only when a
 * name actually changes.
 *
 * GUI thread only. The bar is watched through a guarded pointer: a button that
 * outlives its bar (deleted later) never calls into it.
 */
class KELTABCONTAINER_EXPORT BrowserTabButtonEx : public QFrame
{
    Q_OBJECT
public:
    /**
     * @param tabData  the tab's record, shared with the bar; the button writes its title
     *                 and icon address into it
     * @param iconPath a local icon file to start with (web tabs fetch it again through the cache)
     * @param loading  start with the loading indicator turning
     * @param bar      the owning bar, asked for icons and policy; may be null
     * @param parent   the widget the button lies in
     */
    BrowserTabButtonEx(TabDataPtr tabData, const QString &iconPath, bool loading,
                       BrowserTabBarEx *bar, QWidget *parent = nullptr);
    ~BrowserTabButtonEx() override;

    /** Sets the title (record, tool tip, label). An empty @p title is ignored. */
    void SetTitle(const QString &title);
    /** Asks the icon cache for @p url; the answer becomes the icon (a failure clears it). */
    void SetIconUrl(const QString &url);
    /** Makes the button the current tab or not. A dragged button changes its look on release. */
    void SetChecked(bool checked);
    bool IsChecked() const;
    /** True while the bar drags this button. */
    bool IsPressed() const;
    /** The bar has started dragging this button. */
    void SetPressed();
    /** The drag of this button has ended. */
    void SetReleased();
    /** Shows the loading indicator (except on the home tab, which keeps its icon). */
    void LoadStart();
    /** Hides the loading indicator and shows the icon again. */
    void LoadFinished();
    /**
     * Shows the separator at the button's side when @p visible and the button is
     * neither current nor hovered; hides it otherwise.
     */
    void SetSeparatorVisible(bool visible);
    /** Re-evaluates which icon (or the loading indicator) the button shows. */
    void UpdateIcon();
    /** The icon's top-left corner in global coordinates, moved by (12, 8) design pixels. */
    QPoint GetIconGlobalPos() const;
    /** Chooses the icon source again from the record (plug-in icon, web icon) and shows it. */
    void ReloadIcon();
    /** Applies the title font again (after a DPI change). */
    void ApplyFont();

    /** The tab's record. */
    TabDataPtr GetTabData() const;
    /** The address last asked of the icon cache; empty when none was asked. */
    QString RequestedIconUrl() const;
    /** The local file of the tab's icon; empty when the tab has none. */
    QString IconPath() const;
    bool IsLoading() const;
    bool IsHovered() const;
    /** True when the separator at the button's side is shown. */
    bool IsSeparatorVisible() const;

Q_SIGNALS:
    /** The pointer entered (true) or left (false). @note Not emitted for the current tab. */
    void SigHoverChanged(TabDataPtr tabData, bool hovered);
    /** The left button was pressed on the tab. */
    void SigChangeClicked(TabDataPtr tabData);
    /** The close button was clicked, or the tab double-clicked when the bar closes tabs on double clicks. */
    void SigCloseClicked(TabDataPtr tabData);
    /** The checked icon was clicked. @note Only possible while the bar supplies a checked icon. */
    void SigIconClicked(TabDataPtr tabData);
    /** The right button was pressed. @note Not emitted while the button is dragged. */
    void SigMenuClicked(TabDataPtr tabData);
    /** The left button was pressed: a drag may begin. @note Never emitted by the home tab. */
    void SigButtonPressed();

public Q_SLOTS:
    void SlotCloseClicked();
    void SlotIconClicked();
    /** The icon cache's answer; answers for any address but the last one asked are ignored. */
    void SlotRequestImageFinished(bool success, const QString &url, const QString &localPath);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    friend class BrowserTabBarEx;
    struct Form;
    enum class FormMode { Created, Deferred };

    // For the bar: a button whose inner widgets wait until it comes into view.
    BrowserTabButtonEx(TabDataPtr tabData, const QString &iconPath, bool loading, BrowserTabBarEx *bar,
                       QWidget *parent, FormMode mode);
    void Init(FormMode mode);
    // The bar is going away: from now on the button asks it nothing.
    void DetachFromBar();
    // The inner widgets (content frame, icon, loading indicator, title, close button)
    // exist only while the bar shows the button: a strip of hundreds of tabs keeps
    // one widget per tab, not six. Every state change is kept in the fields below
    // and applied when the widgets are made.
    void CreateForm();
    void ReleaseForm();

    void InitButton();
    void SetStyleName(const QString &name);
    QString BackStyleName() const;
    void UpdateLayout();
    void UpdateTextGeometry();
    void UpdateTitle();
    void UpdateCloseButton();
    void ShowCustomIcon();
    void ShowDefaultIcon();
    void SetIconLook(const QString &name, const QString &styleSheet, const QString &iconFile, bool takesMouse);
    void ApplyIconLook();
    void SetIconVisibility(bool iconShown, bool loadingShown);
    void ChooseIconSource();
    bool IsHomePage() const;

    bool m_checked = false;
    bool m_pressed = false;
    bool m_loading = false;
    bool m_hovered = false;
    bool m_checkedHover = false;
    std::unique_ptr<Form> m_form;
    QPointer<BrowserTabBarEx> m_bar;
    TabDataPtr m_tabData;
    QString m_requestedIconUrl;
    QString m_iconPath;

    // The look of the inner widgets, kept while they do not exist.
    bool m_separatorShown = false;
    bool m_iconShown = true;
    bool m_loadingShown = false;
    bool m_closeShown = true;
    bool m_iconTakesMouse = false;
    QString m_iconName;
    QString m_iconStyleSheet;
    QString m_iconFile;
    // The file the icon button's QIcon was made from, so that an unchanged icon is not
    // loaded and re-polished again on every state change.
    QString m_shownIconFile;
};
