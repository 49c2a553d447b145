// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <memory>

class QApplication;

/*! How large everything is drawn on this display: as the desktop has it, 125 and 150 % too. What is next to 100 % is 100 %:
 *  with 104 % lines one pixel wide fall between the pixels, and frames lack a side, for nothing that could be read better.
 *  Fonts have the size of the display's own resolution then.
 */
namespace DisplayScale {

/*! Whether \a factor is 1 but for 5 %. */
bool isNearOne(qreal factor);

/*! The arguments are those of QApplication, and must live as long. */
std::unique_ptr<QApplication> makeApplication(int &argc, char *argv[]);

} // namespace DisplayScale
