// SPDX-License-Identifier: MIT
#pragma once

#include "browsertabbuttonbase.h"
#include "kelqtcompat.h"
#include "keltabcontainer_export.h"

class BrowserTabBar;
class BrowserTabButtonPrivate;

/**
 * One tab of the classic tab bar (BrowserTabBar): icon or loading animation, title
 * and close button over a background that the bar paints for it. A home-page tab
 * shows a single frame ("TabButtonHomePage") instead.
 *
 * Style names: the button is "TabButtonFront" while checked, "TabButtonBackHover"
 * while hovered and "TabButtonBack" otherwise; its children are "TabButtonContent",
 * "TabButtonIcon" (renamed "TabButtonIconCustom" or "TabButtonIconDefault" when its
 * icon is set), "TabButtonText" and "TabButtonCloseBtn", and, made when first needed,
 * "TabButtonHomePage" (home-page tabs only) and "TabButtonLoading" (from the first
 * load on). After each name change the children whose style sheet rules can tell the
 * button's names apart are re-polished, so a style sheet can address them by their
 * parent's state (`#TabButtonFront #TabButtonText`); the others would look the same
 * after a re-polish, and are left as they are.
 *
 * The inner widgets of a tab that lies wholly past the strip's end, where the strip
 * cuts it off, are not kept (unless it is current, hovered or held): its bar makes
 * them when the tab comes into view, showing the tab's state at that moment. Such a
 * tab is one widget instead of five, which is what lets a strip hold thousands of
 * tabs; assistive technology still finds its close button. What a host sets on the
 * inner widgets themselves goes with them. A button made by a host has its inner
 * widgets for good.
 *
 * Unlike the scrolling strip's button it restyles at once when checked during a drag,
 * shows its close button while hovered even when narrow, and leaves the record's icon
 * address to the host.
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabButton : public BrowserTabButtonBase
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
    /** The bar deletes its buttons; a host does not. */
    ~BrowserTabButton() override;

    /** After a drag: re-evaluates the close button when the pointer is no longer over the button. */
    void UpdateAfterRelease();
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

protected:
    /** Shows the close button (also on a narrow tab; not on a home-page tab) and the hover look. */
    void enterEvent(KelEnterEvent *event) override;
    /** Takes the hover look away and re-evaluates the close button, unless the tab is dragged. */
    void leaveEvent(QEvent *event) override;
    /** Paints the bar's background for the button's width and state; nothing once the bar is gone. */
    void paintEvent(QPaintEvent *event) override;
    /** Lays out the children for the new size and re-evaluates the close button. */
    void resizeEvent(QResizeEvent *event) override;

private:
    Q_DECLARE_PRIVATE(BrowserTabButton)
};
