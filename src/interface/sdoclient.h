// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

class QObject;

/*! Reads objects of CANopen devices by SDO upload (CiA 301).
 *
 *  Implemented and owned by the host; lives in the GUI thread. One upload at a time: the next one is
 *  started after the outcome of the one before.
 */
class SdoClient
{
public:
    virtual ~SdoClient() = default;

    /*! Starts one upload; returns at once and emits nothing before it has returned.
     *
     *  \a nodeId   1 to 127
     *  \a dataType CiA 301 data type code: 3 INTEGER16, 4 INTEGER32, 5 UNSIGNED8, 6 UNSIGNED16, 7 UNSIGNED32
     *  \a timeout  how long to wait for an answer, in milliseconds. The host may wait longer or ask again
     *              for a device that it knows to be slow, but always ends the upload with exactly one of
     *              the two signals of getQObject().
     */
    virtual void upload(quint8 nodeId, quint16 index, quint8 subIndex, quint16 dataType, int timeout) = 0;

    /*! The object that emits the outcome of every upload:
     *
     *  - `resultReceived(quint8,quint16,quint8,QVariant)`: node ID, index, sub-index, value. The value is a
     *    `uint` for the UNSIGNED types and an `int` for the INTEGER types.
     *  - `errorReceived(quint8,quint16,quint8,quint32)`: node ID, index, sub-index, code. FFFFFFFFh says that
     *    no answer came in time (also: that the bus has gone); any other code is an SDO abort code of CiA
     *    301.
     */
    virtual QObject *getQObject() = 0;
};
