// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

/*! How long work may keep the window from what a person does, in ms. */
constexpr qint64 workSlice = 12;
