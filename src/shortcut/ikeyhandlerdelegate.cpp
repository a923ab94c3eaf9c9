// SPDX-License-Identifier: MIT
#include "ikeyhandlerdelegate.h"

// Defined out of line so that the class has one home for its vtable.
IKeyHandlerDelegate::IKeyHandlerDelegate() = default;
IKeyHandlerDelegate::IKeyHandlerDelegate(const IKeyHandlerDelegate &) = default;
IKeyHandlerDelegate &IKeyHandlerDelegate::operator=(const IKeyHandlerDelegate &) = default;
IKeyHandlerDelegate::~IKeyHandlerDelegate() = default;
