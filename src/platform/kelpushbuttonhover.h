// SPDX-License-Identifier: MIT
#pragma once

#include "kelqtcompat.h"
#include "keltabcontainer_export.h"

#include <QPushButton>

/**
 * A push button whose hover state is a property that style sheets can match
 * (`KelPushButtonHover[hovered="true"]`), also when the button is covered by a
 * popup and :hover would stay stale. Emits SigHoverChanged on every change.
 */
class KELTABCONTAINER_EXPORT KelPushButtonHover : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(bool hovered READ IsHovered NOTIFY SigHoverChanged)
public:
    explicit KelPushButtonHover(QWidget *parent = nullptr);
    ~KelPushButtonHover() override;

    bool IsHovered() const;

Q_SIGNALS:
    /** Emitted when the pointer enters (true) or leaves (false); not emitted when the state does not change. */
    void SigHoverChanged(bool hovered);

protected:
    void enterEvent(KelEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void SetHovered(bool hovered);

    bool m_hovered = false;
};
