// SPDX-License-Identifier: MIT
#pragma once

#include "browsertabbuttonbase.h"
#include "kelqtcompat.h"
#include "keltabcontainer_export.h"

class BrowserTabBarEx;
class BrowserTabButtonExPrivate;

/**
 * One tab of BrowserTabBarEx: an icon (or a turning loading indicator), the elided
 * title and a close button.
 *
 * Its look comes from style sheets keyed on object names, which the button switches
 * as its state changes: the button is "TabButtonFrontEx" (current), "TabButtonBackEx"
 * or "TabButtonBackExHover" (others) or "TabButtonPressedEx" (dragged); its content
 * frame is "TabButtonContentExWithSep" or "TabButtonContentExNoSep"; the icon button
 * is "TabButtonIconHomeEx", "TabButtonIconCustomEx", "TabButtonIconWebEx" or
 * "TabButtonIconDefaultEx". Names are switched, and widgets re-polished, only when a
 * name actually changes.
 *
 * On the current tab under the pointer the icon may be the bar's checked icon
 * (BrowserTabBarEx::GetCheckedIcon()); clicking it reports SigIconClicked().
 *
 * @ingroup bars
 */
class KELTABCONTAINER_EXPORT BrowserTabButtonEx : public BrowserTabButtonBase
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
    BrowserTabButtonEx(TabDataPtr tabData, const QString &iconPath, bool loading, BrowserTabBarEx *bar,
                       QWidget *parent = nullptr);
    /** The bar deletes its buttons; a host does not. */
    ~BrowserTabButtonEx() override;

    /**
     * Shows the separator at the button's side when @p visible and the button is
     * neither current nor hovered; hides it otherwise.
     */
    void SetSeparatorVisible(bool visible);
    /** True when the separator at the button's side is shown. */
    bool IsSeparatorVisible() const;
    /** Re-evaluates which icon (or the loading indicator) the button shows. */
    void UpdateIcon();
    /** The icon's top-left corner in global coordinates, moved by (12, 8) design pixels. */
    QPoint GetIconGlobalPos() const;
    /** Applies the title font again at the present scale factor. */
    void ApplyFont();

Q_SIGNALS:
    /** The pointer entered (true) or left (false). @note Not emitted for the current tab. */
    void SigHoverChanged(TabDataPtr tabData, bool hovered);
    /** The checked icon was clicked. @note Only possible while the bar supplies a checked icon. */
    void SigIconClicked(TabDataPtr tabData);

public Q_SLOTS:
    /** Emits SigIconClicked() for this tab (the icon button's clicked signal). */
    void SlotIconClicked();

protected:
    /** Shows the hover look (the checked icon on the current tab) and emits SigHoverChanged(true) for other tabs. */
    void enterEvent(KelEnterEvent *event) override;
    /** Takes the hover look away and emits SigHoverChanged(false) for tabs other than the current one. */
    void leaveEvent(QEvent *event) override;
    /** Lays out the icon, title and close button for the new width; narrow tabs hide the close button. */
    void resizeEvent(QResizeEvent *event) override;

private:
    Q_DECLARE_PRIVATE(BrowserTabButtonEx)
};
