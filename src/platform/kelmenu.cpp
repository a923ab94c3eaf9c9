// SPDX-License-Identifier: MIT
#include "kelmenu.h"

KelMenu::KelMenu(QWidget *parent)
    : QMenu(parent)
{
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
}

KelMenu::~KelMenu() = default;
