// SPDX-License-Identifier: MIT
#include "idpiadapter.h"

#include <algorithm>
#include <vector>

namespace {

// Plain storage with static lifetime: adapters that die during static
// destruction still find the list alive.
std::vector<IDpiAdapter *> &Adapters()
{
    static std::vector<IDpiAdapter *> adapters;
    return adapters;
}

bool IsLive(IDpiAdapter *adapter)
{
    const auto &list = Adapters();
    return std::find(list.begin(), list.end(), adapter) != list.end();
}

} // namespace

IDpiAdapter::IDpiAdapter()
{
    Adapters().push_back(this);
}

IDpiAdapter::IDpiAdapter(const IDpiAdapter &)
    : IDpiAdapter()
{
}

IDpiAdapter &IDpiAdapter::operator=(const IDpiAdapter &)
{
    return *this;
}

IDpiAdapter::~IDpiAdapter()
{
    auto &list = Adapters();
    list.erase(std::remove(list.begin(), list.end(), this), list.end());
}

void IDpiAdapter::AdjustForDpi()
{
}

void IDpiAdapter::NotifyAll()
{
    // Work on a snapshot: an adapter may create or destroy adapters while it adjusts.
    const std::vector<IDpiAdapter *> snapshot = Adapters();
    for (IDpiAdapter *adapter : snapshot) {
        if (IsLive(adapter))
            adapter->AdjustForDpi();
    }
}

int IDpiAdapter::LiveAdapterCount()
{
    return static_cast<int>(Adapters().size());
}
