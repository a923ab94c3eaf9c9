#include "tabstrip.h"

TabStrip::TabStrip(QObject *parent)
    : QObject(parent)
{
}

TabStrip::~TabStrip() = default;
