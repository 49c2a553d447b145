// SPDX-License-Identifier: MIT
#pragma once

#include "objectkey.h"

#include <QMetaType>
#include <QVariant>

namespace CanOpen {

/*! Names one upload among all that a client was ever given; 0 names none. */
using SdoTicket = quint64;

/*! Outcome of one upload. */
struct SdoOutcome
{
    enum class Kind {
        Value,    //!< value holds what was read
        Abort,    //!< the device refused; code is its abort code
        Error,    //!< the transfer failed on the client's side; code is the abort code that says why
        Timeout,  //!< the device did not answer, also after the repeats
        Cancelled //!< cancelled by cancelAll()
    };

    SdoTicket ticket = 0; // as upload() gave it
    Kind kind = Kind::Timeout;
    quint8 nodeId = 0;
    ObjectKey key;
    QVariant value;
    quint32 code = 0;
    int repeats = 0; // how often the request was repeated
};

} // namespace CanOpen

Q_DECLARE_METATYPE(CanOpen::SdoOutcome)
