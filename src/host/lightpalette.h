// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>

/*! Whether windows of \a palette are darker than their text. */
bool isDarkPalette(const QPalette &palette);

/*! A light palette for windows that show coloured values, which are made for a light ground. */
QPalette lightPalette();
