#pragma once

#include "keltabcontainer_export.h"

#include <QWidget>

class QGridLayout;

/**
 * An overlay that covers its parent (a tab page) and follows its resizes.
 *
 * SetMaskWidget() lays one widget (a message, a spinner, a dialog) into the mask
 * with the given alignment. The mask watches its parent through an event filter,
 * installed by the constructor (installing it again, as TabContainer does, is harmless).
 */
class KELTABCONTAINER_EXPORT TabMask : public QWidget
{
    Q_OBJECT
public:
    explicit TabMask(QWidget *parent = nullptr);
    ~TabMask() override;

    /**
     * Shows @p widget in the mask, aligned by @p alignment; it replaces, and deletes,
     * the widget shown before (a null @p widget only removes the old one).
     * @param blockInput true: the mask takes every mouse event, so the page under it
     *        cannot be used; false: clicks outside @p widget reach the page.
     * @param dimmed true: the page is darkened behind the widget; false: the mask is clear.
     */
    void SetMaskWidget(QWidget *widget, bool blockInput, bool dimmed, Qt::Alignment alignment);

    QWidget *MaskWidget() const;
    bool IsBlockingInput() const;
    bool IsDimmed() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QGridLayout *m_layout;
    QWidget *m_widget = nullptr;
    bool m_dimmed = false;
};
