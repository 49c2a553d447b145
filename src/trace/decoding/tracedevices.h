// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectdictionary.h>
#include <snapshot/snapshot.h>

#include <QMap>

/*! What is known of the devices of a trace beside it. */
struct TraceDevices
{
    Snapshot snapshot;
    QMap<quint8, CanOpen::ObjectDictionary> sheets; //!< EDS or DCF, by node ID

    /*! \a more takes the place of what is known already: all of a snapshot, and of data sheets the nodes that it has. */
    void add(const TraceDevices &more)
    {
        if (!more.snapshot.nodes.isEmpty())
            snapshot = more.snapshot;
        for (auto sheet = more.sheets.cbegin(); sheet != more.sheets.cend(); ++sheet)
            sheets.insert(sheet.key(), sheet.value());
    }
};
