// SPDX-License-Identifier: MIT
#pragma once

#include <QPalette>

/*! Whether windows of \a palette are darker than their text. */
bool isDarkPalette(const QPalette &palette);

/*! A light palette, for coloured values that are made for a light ground. */
QPalette lightPalette();

/*! Makes the whole program light on a dark desktop, so that it has one look; on a light desktop it keeps that
 *  one's colours. To be called again when the desktop has changed.
 */
void keepProgramLight();
