// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/*! A reason that the system gave, as QFile::errorString() or a CAN device has it, in the language of the
 *  program. Reasons that are not known stay as they are.
 */
QString systemErrorText(const QString &reason);
