// SPDX-License-Identifier: MIT
#include "kelpushbuttonhover.h"

#include "uiutils.h"

KelPushButtonHover::KelPushButtonHover(QWidget *parent)
    : QPushButton(parent)
{
}

KelPushButtonHover::~KelPushButtonHover() = default;

bool KelPushButtonHover::IsHovered() const
{
    return m_hovered;
}

void KelPushButtonHover::enterEvent(KelEnterEvent *event)
{
    QPushButton::enterEvent(event);
    SetHovered(true);
}

void KelPushButtonHover::leaveEvent(QEvent *event)
{
    QPushButton::leaveEvent(event);
    SetHovered(false);
}

void KelPushButtonHover::hideEvent(QHideEvent *event)
{
    // A hidden button gets no leave event; drop the hover look so it does not
    // come back highlighted.
    QPushButton::hideEvent(event);
    SetHovered(false);
}

void KelPushButtonHover::SetHovered(bool hovered)
{
    if (m_hovered == hovered)
        return;
    m_hovered = hovered;
    UIUtils::UpdateStyle(this);
    Q_EMIT SigHoverChanged(hovered);
}
