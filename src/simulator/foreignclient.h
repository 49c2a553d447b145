// SPDX-License-Identifier: MIT
#pragma once

#include "faultkinds.h"

#include <canopen/sdoserver.h>

#include <QCanBusFrame>
#include <QVector>

namespace Simulator {

/*! Another client that reads from a node: its requests, and the answers that the node gives it. */
class ForeignClient
{
public:
    /*! \a dictionary is the node's and must outlive the client. */
    ForeignClient(quint8 nodeId, const CanOpen::ObjectDictionary *dictionary);

    /*! The frames of a whole upload, requests and answers in turn. It reads the fault's object, or else one of
     *  the dictionary after the other, but not \a busyObject.
     */
    QVector<QCanBusFrame> readAll(const Faults::ForeignClient &fault, CanOpen::ObjectKey busyObject);

    /*! The request that begins an upload which nobody goes on with: of the fault's object, or else of one that
     *  takes segments.
     */
    QCanBusFrame beginOnly(const Faults::AbandoningClient &fault) const;

private:
    CanOpen::ObjectKey nextObject(CanOpen::ObjectKey busyObject);
    CanOpen::ObjectKey longObject() const;

    quint8 m_nodeId;
    const CanOpen::ObjectDictionary *m_dictionary;
    int m_transfers = 0;
};

} // namespace Simulator
