// SPDX-License-Identifier: MIT
#include "igesturehandlerdelegate.h"

// Defined out of line so that the class has one home for its vtable.
IGestureHandlerDelegate::IGestureHandlerDelegate() = default;
IGestureHandlerDelegate::IGestureHandlerDelegate(const IGestureHandlerDelegate &) = default;
IGestureHandlerDelegate &IGestureHandlerDelegate::operator=(const IGestureHandlerDelegate &) = default;
IGestureHandlerDelegate::~IGestureHandlerDelegate() = default;
