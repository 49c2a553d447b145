// SPDX-License-Identifier: MIT
#pragma once

#include "findings.h"

#include <QByteArray>

/*! What a check-up has found, for programs. */
namespace CheckupWriting {

/*! An object with "verdict", "components" and "findings" (those of the vehicle as a whole), with a line end. */
QByteArray toJson(const CheckupResult &result);

} // namespace CheckupWriting
