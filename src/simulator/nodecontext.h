// SPDX-License-Identifier: MIT
#pragma once

#include "agenda.h"
#include "faultlist.h"

#include <canopen/objectdictionary.h>
#include <canopen/objectlookup.h>

#include <QVector>
#include <QtGlobal>

#include <functional>

class QCanBusFrame;

namespace Simulator {

/*! What the services of a node use of it. Everything outlives them. */
struct NodeContext
{
    quint8 nodeId = 0;
    CanOpen::ObjectDictionary *dictionary = nullptr;
    const FaultList *faults = nullptr;
    Agenda *agenda = nullptr;
    std::function<qint64()> clock; // microseconds, the agenda's time
    std::function<void(const QCanBusFrame &)> send;
    /*! The entry with the value that it has now, or null. */
    std::function<const CanOpen::ObjectEntry *(CanOpen::ObjectKey)> entry;
    /*! Whether a value changes by itself. */
    std::function<bool(CanOpen::ObjectKey)> isMoving;

    /*! The dictionary's values, for parameter records. */
    CanOpen::ObjectLookup lookup() const;

    /*! All numbers in the parameter and mapping records of the PDOs from \a firstParameter on (1400h or 1800h), to see whether
     *  one was written.
     */
    QVector<quint32> pdoSettings(quint16 firstParameter) const;
};

} // namespace Simulator
