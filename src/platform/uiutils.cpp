// SPDX-License-Identifier: MIT
#include "uiutils.h"

#include <QStyle>
#include <QWidget>

void UIUtils::UpdateStyle(QWidget *widget)
{
    if (!widget)
        return;
    QStyle *style = widget->style();
    style->unpolish(widget);
    style->polish(widget);
    widget->update();
}
