// SPDX-License-Identifier: MIT
#pragma once

#include "objectbook.h"
#include "pdobook.h"
#include "tracedevices.h"

/*! All that is known of the devices of a trace: beside it, and out of it. */
class TraceBook
{
public:
    /*! The EDS or DCF of a node. */
    void tell(quint8 nodeId, const CanOpen::ObjectDictionary &sheet);
    void tell(const Snapshot &snapshot);
    void tell(const TraceDevices &devices);
    /*! What the PDOs of a node carry, from where its parameters stand. */
    void tell(quint8 nodeId, const CanOpen::ObjectLookup &lookup) { m_pdos.tell(nodeId, lookup); }

    /*! A transfer of the trace, in the order in which they ended. */
    void learn(const SdoTransfer &transfer) { m_pdos.learn(transfer); }

    const PdoBook &pdos() const { return m_pdos; }
    const ObjectBook &objects() const { return m_objects; }

private:
    PdoBook m_pdos;
    ObjectBook m_objects;
};
