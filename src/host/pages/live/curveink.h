// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QPen>

/*! How the curve of a row looks: colour, and from the eleventh on the dashes too, so that curves can be told apart. */
namespace CurveInk {

QPen pen(int row);

/*! A piece of it, as a sign of the row. */
QIcon sign(int row);

} // namespace CurveInk
