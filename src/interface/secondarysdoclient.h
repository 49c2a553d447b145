// SPDX-License-Identifier: MIT
#pragma once

class QObject;

/*! A second source of SDO outcomes, to which a plug-in only listens.
 *
 *  Implemented and owned by the host.
 */
class SecondarySdoClient
{
public:
    virtual ~SecondarySdoClient() = default;

    /*! The object that emits `resultReceived(quint8,quint16,quint8,QVariant)` and
     *  `errorReceived(quint8,quint16,quint8,quint32)`, with the meaning of SdoClient's signals.
     */
    virtual QObject *getQObject() = 0;
};
