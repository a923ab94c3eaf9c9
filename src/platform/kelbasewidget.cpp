// SPDX-License-Identifier: MIT
#include "kelbasewidget.h"

KelBaseWidget::KelBaseWidget(QWidget *parent, Qt::WindowFlags flags)
    : QWidget(parent, flags | Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_StyledBackground, true);
}

KelBaseWidget::~KelBaseWidget() = default;
