// SPDX-License-Identifier: MIT
#pragma once

#include <QFileInfoList>
#include <QString>

/*! The folder in which the user's traces are kept. */
namespace UserTraces {

/*! "draxel/traces" in the user's folder for data; it may not be there. */
QString path();

/*! The traces in it, the newest first, so many at most. */
QFileInfoList list(int most);

} // namespace UserTraces
