// SPDX-License-Identifier: MIT
#include "kellabel.h"

KelLabel::KelLabel(QWidget *parent)
    : QLabel(parent)
{
    // Tab titles come from web pages: never interpret them as rich text.
    setTextFormat(Qt::PlainText);
}

KelLabel::~KelLabel() = default;
