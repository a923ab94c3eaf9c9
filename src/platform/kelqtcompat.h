// SPDX-License-Identifier: MIT
#pragma once

// The few types of the public API that differ between Qt 5 and Qt 6. A host includes
// the same headers with either; the library is built against one of them.

#include <QtGlobal>

#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
class QEnterEvent;
/**
 * The event QWidget::enterEvent() takes: QEnterEvent with Qt 6, QEvent with Qt 5.
 * @ingroup platform
 */
using KelEnterEvent = QEnterEvent;
#else
class QEvent;
/**
 * The event QWidget::enterEvent() takes: QEnterEvent with Qt 6, QEvent with Qt 5.
 * @ingroup platform
 */
using KelEnterEvent = QEvent;
#endif
