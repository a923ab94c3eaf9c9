#pragma once

#include "keltabcontainer_export.h"
#include "tabdata.h"

#include <QFrame>

#include <memory>

class BrowserTabBar;
class BrowserTabButtonPrivate;

/**
 * One tab of the classic tab bar (BrowserTabBar): icon or loading animation, title
 * and close button over a background that the bar paints for it. A home-page tab
 * shows a single frame ("TabButtonHomePage") instead.
 *
 * The button reports user intent to its bar by signals and is driven by the bar's
 * calls; it never changes the tab list itself.
 *
 * Style names: the button is "TabButtonFront" while checked, "TabButtonBackHover"
 * while hovered and "TabButtonBack" otherwise; its children are "TabButtonHomePage",
 * "TabButtonContent", "TabButtonIcon" (renamed "TabButtonIconCustom" or
 * "TabButtonIconDefault" when its icon is set), "TabButtonLoading", "TabButtonText"
 * and "TabButtonCloseBtn". After each name change the children are re-polished, so
 * a style sheet can address them by their parent's state
 * (`#TabButtonFront #TabButtonText`).
 */
class KELTABCONTAINER_EXPORT BrowserTabButton : public QFrame
{
    Q_OBJECT
public:
    /**
     * @param tabData  the tab; a null pointer is replaced by a fresh record
     * @param iconPath local file of the tab's icon, or empty
     * @param loading  start with the loading animation running
     * @param bar      the owning bar (held weakly: the button outlives it harmlessly)
     * @param parent   the widget the button lies in
     */
    BrowserTabButton(TabDataPtr tabData, const QString &iconPath, bool loading, BrowserTabBar *bar,
                     QWidget *parent = nullptr);
    ~BrowserTabButton() override;

    TabDataPtr GetTabData() const;

    /** Sets the record's title, the tool tip and the label. @note An empty title is ignored. */
    void SetTitle(const QString &title);
    /**
     * Asks the icon cache for @p url's local file; the icon changes when the answer
     * arrives. The record's icon URL is left as it is (the host owns it).
     */
    void SetIconUrl(const QString &url);
    /**
     * Checks or unchecks the tab and restyles it at once, also in the middle of a
     * drag. A checked tab is raised above its siblings and always shows its close
     * button.
     */
    void SetChecked(bool checked);
    bool IsChecked() const;

    /** Marks the button as held by a drag of the bar; nothing else changes. */
    void SetPressed();
    /** Ends the hold set by SetPressed(). */
    void SetReleased();
    bool IsPressed() const;
    bool IsHovered() const;
    bool IsLoading() const;

    /** After a drag: re-evaluates the close button when the pointer is no longer over the button. */
    void UpdateAfterRelease();

    /** Shows the loading animation instead of the icon. */
    void LoadStart();
    /** Stops the loading animation and shows the icon again. */
    void LoadFinished();

    /** The URL last asked of the icon cache. */
    QString GetRequestedIconUrl() const;
    /** The local file of the icon shown; empty for the default icon. */
    QString GetIconPath() const;

    /** Asks again for the tab's icon, as at construction. */
    void ReloadIcon();
    /** Shows the record's title again (after the host changed the record directly). */
    void UpdateTitle();
    /** Places the children for the button's size, then refreshes the icon and title. */
    void UpdateLayout();
    /** Places the children for the button's size, without touching icon or title. */
    void UpdateLayoutOnly();
    /**
     * Shows the close button on the checked tab, or on an unchecked one when the bar's
     * common button width is above NoCloseButtonWidth(); never on a home-page tab.
     */
    void UpdateCloseButton();

Q_SIGNALS:
    /** The left button was pressed on the tab. */
    void SigChangeClicked(TabDataPtr tabData);
    /** The close button was clicked, or the tab double-clicked while the bar closes tabs on double clicks. */
    void SigCloseClicked(TabDataPtr tabData);
    /** The right button was pressed. @note Not emitted while the tab is held by a drag. */
    void SigMenuClicked(TabDataPtr tabData);
    /** The left button was pressed on a tab that may be dragged. @note Never emitted for a home-page tab. */
    void SigButtonPressed();

public Q_SLOTS:
    /** Emits SigCloseClicked for this tab (the close button's clicked signal). */
    void SlotCloseClicked();

private Q_SLOTS:
    void SlotRequestImageFinished(bool success, const QString &url, const QString &localPath);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void InitForm();
    void InitButton();
    void RequestIcon();
    void UpdateIcon();
    void UpdateTextGeometry();
    void SetStyleName(const QString &name);

    std::unique_ptr<BrowserTabButtonPrivate> const d;
};
