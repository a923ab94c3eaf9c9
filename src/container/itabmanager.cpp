// SPDX-License-Identifier: MIT
#include "itabmanager.h"

// Out of line so that the vtable is emitted (and exported) once, in the library.
ITabManager::~ITabManager() = default;
