// SPDX-License-Identifier: MIT
#pragma once

#include "faultlist.h"

#include <QCanBusFrame>
#include <QVector>

namespace Simulator {

/*! Falsifies the right answers of an SDO server as \a faults say. \a object is that of the transfer,
 *  \a segment the number of the request for a segment, 0 for the one that began it.
 */
void distortAnswers(const FaultList &faults, CanOpen::ObjectKey object, qint64 segment,
                    QVector<QCanBusFrame> &answers);

/*! The same for the segments, or the end, of a block upload. They have no command specifier that could be told
 *  from data.
 */
void distortBlock(const FaultList &faults, CanOpen::ObjectKey object, QVector<QCanBusFrame> &answers);

} // namespace Simulator
