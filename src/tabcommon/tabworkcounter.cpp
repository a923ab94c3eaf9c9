// SPDX-License-Identifier: MIT
#include "tabworkcounter_p.h"

namespace {
quint64 counts[TabWorkCounter::KindCount] = {};
} // namespace

void TabWorkCounter::Add(Kind kind)
{
    ++counts[kind];
}

quint64 TabWorkCounter::Count(Kind kind)
{
    return counts[kind];
}
