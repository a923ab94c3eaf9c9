// SPDX-License-Identifier: MIT
#include "kelpushbutton.h"

KelPushButton::KelPushButton(int type, int business, QWidget *parent)
    : QPushButton(parent)
    , m_type(type)
    , m_business(business)
{
    setFocusPolicy(Qt::NoFocus);
}

KelPushButton::~KelPushButton() = default;

int KelPushButton::ButtonType() const
{
    return m_type;
}

int KelPushButton::Business() const
{
    return m_business;
}
