// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>
#include <QTest>

namespace KelTest {

// Switches accessibility on as a running screen reader does, and waits until it is.
// With Qt 6, QAccessible::isActive() follows the platform bridge, which learns from
// the accessibility bus that a client listens only after a round trip through the
// event loop; until then Qt drops every event, so a test that asserts the first ones
// must wait here. With Qt 5 setActive() takes effect at once.
inline bool SwitchAccessibilityOn()
{
    QAccessible::setActive(true);
    return QTest::qWaitFor([] { return QAccessible::isActive(); }, 10000);
}

} // namespace KelTest
