// SPDX-License-Identifier: MIT
#pragma once

#include "objectkey.h"

#include <QByteArray>
#include <QMetaType>
#include <QVariant>

namespace CanOpen {

/*! Names one upload among all that a client was ever given; 0 names none. */
using SdoTicket = quint64;

/*! How an object is asked for. */
enum class SdoProtocol {
    Plain,        //!< expedited or segmented, as the server likes
    Block,        //!< block upload, for what is long; plain when the server does not know it or fails in it
    BlockWhenLong //!< plain, and anew in blocks when the announced size makes that worth while
};

/*! Outcome of one upload. */
struct SdoOutcome
{
    enum class Kind {
        Value,    //!< value holds what was read
        Abort,    //!< the device refused; code is its abort code
        Error,    //!< the transfer failed on the client's side; code is the abort code that says why
        Timeout,  //!< the device did not answer, also after the repeats
        Cancelled //!< cancelled by cancel() or cancelAll()
    };

    SdoTicket ticket = 0; // as upload() gave it
    Kind kind = Kind::Timeout;
    quint8 nodeId = 0;
    ObjectKey key;
    QVariant value;
    QByteArray raw; // of a value: its bytes as they came
    quint32 code = 0;
    int repeats = 0; // how often the request was repeated
    int frames = 0;  // that the upload has cost in both directions, its repeats and aborts included
    /*! Of raw bytes: they came in one frame that does not say how many of its four bytes count, so the last ones may
     *  be none of the value.
     */
    bool isSizeUnknown = false;
    /*! No request has gone out; nothing is known of the device. */
    bool isUnasked = false;
    /*! Of a time-out: the bus was full when the wait ended, so that the answer may have found no room on it. */
    bool isCrowdedOut = false;
    /*! Another client used the node and held the upload up. */
    bool foreignClient = false;
    /*! Of an error: the answers could not be told from copies of earlier ones, or from frames nobody asked for. */
    bool isMixedUp = false;
};

} // namespace CanOpen

Q_DECLARE_METATYPE(CanOpen::SdoOutcome)
