// SPDX-License-Identifier: MIT
#include "wrongversionplugin.h"
