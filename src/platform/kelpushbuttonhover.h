// SPDX-License-Identifier: MIT
#pragma once

#include "kelqtcompat.h"
#include "keltabcontainer_export.h"

#include <QPushButton>

/**
 * A push button whose hover state is a property that style sheets can match
 * (`KelPushButtonHover[hovered="true"]`), also when the button is covered by a
 * popup and :hover would stay stale. Emits SigHoverChanged on every change.
 *
 * @ingroup platform
 */
class KELTABCONTAINER_EXPORT KelPushButtonHover : public QPushButton
{
    Q_OBJECT
    /** Whether the pointer is over the button, for style sheets (`KelPushButtonHover[hovered="true"]`). */
    Q_PROPERTY(bool hovered READ IsHovered NOTIFY SigHoverChanged)
public:
    /** A button that is not hovered. */
    explicit KelPushButtonHover(QWidget *parent = nullptr);
    /** Nothing beyond QPushButton's own clean-up; no SigHoverChanged() is emitted. */
    ~KelPushButtonHover() override;

    /** @return true while the pointer is over the visible button. */
    bool IsHovered() const;

Q_SIGNALS:
    /** Emitted when the pointer enters (true) or leaves (false); not emitted when the state does not change. */
    void SigHoverChanged(bool hovered);

protected:
    /** Sets the hover state (property "hovered", SigHoverChanged(true)). */
    void enterEvent(KelEnterEvent *event) override;
    /** Clears the hover state (SigHoverChanged(false)). */
    void leaveEvent(QEvent *event) override;
    /** Clears the hover state, because a hidden button gets no leave event. */
    void hideEvent(QHideEvent *event) override;

private:
    void SetHovered(bool hovered);

    bool m_hovered = false;
};
