// SPDX-License-Identifier: MIT
#pragma once

#include "keltabcontainer_export.h"

#include <QPointer>
#include <QWidget>

class QGridLayout;

/**
 * An overlay that covers its parent (a tab page) and follows its resizes.
 *
 * SetMaskWidget() lays one widget (a message, a spinner, a dialog) into the mask
 * with the given alignment. The mask watches its parent through an event filter,
 * installed by the constructor (installing it again, as TabContainer does, is harmless).
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT TabMask : public QWidget
{
    Q_OBJECT
public:
    /**
     * An empty, clear mask that lets the mouse through, covering @p parent and
     * following its size; without a parent it covers nothing until placed.
     */
    explicit TabMask(QWidget *parent = nullptr);
    /** Deletes the mask with the widget shown in it (a child of the mask). */
    ~TabMask() override;

    /**
     * Shows @p widget in the mask, aligned by @p alignment; it replaces, and deletes,
     * the widget shown before (a null @p widget only removes the old one). The mask
     * forgets a widget that the host deletes itself.
     * @param widget the widget to show; the mask takes it over, or null for none
     * @param blockInput true: the mask takes every mouse event outside @p widget, so the
     *        page under it cannot be used, and @p widget gets its own clicks; false: the
     *        mask and @p widget let every mouse event through to the page (for a spinner
     *        or a notice that needs no clicks). Qt hides a mouse-transparent widget's
     *        children from the mouse too, so a widget that must be clicked needs true.
     * @param dimmed true: the page is darkened behind the widget; false: the mask is clear.
     * @param alignment where @p widget lies in the mask (0 fills it)
     */
    void SetMaskWidget(QWidget *widget, bool blockInput, bool dimmed, Qt::Alignment alignment);

    /** @return the widget shown in the mask; null when none, or once it was deleted. */
    QWidget *MaskWidget() const;
    /** @return true when the mask takes the mouse events outside its widget. */
    bool IsBlockingInput() const;
    /** @return true when the page is darkened behind the widget. */
    bool IsDimmed() const;

    /** Follows resizes of the parent so that the mask keeps covering it; the event goes on. */
    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    /** Darkens the page when dimmed; paints nothing otherwise. */
    void paintEvent(QPaintEvent *event) override;

private:
    QGridLayout *m_layout;
    QPointer<QWidget> m_widget;
    bool m_dimmed = false;
};
