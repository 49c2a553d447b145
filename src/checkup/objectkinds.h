// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>

#include <QVector>

#include <optional>

/*! What an object is to somebody who compares two visits. */
struct ObjectKind
{
    enum class Kind : quint8 {
        Parameter, //!< fixed in the device: each change counts
        Firmware,  //!< a version of the software
        Counter,   //!< only rises
        Value,     //!< measured
        Running    //!< depends on what the vehicle does just then: never compared
    };

    Kind kind = Kind::Parameter;
    double noise = 0; //!< of counters and values: a smaller or equal difference is none; in the raw unit
    double noisePercent = 0; //!< likewise, of the value before
};

/*! The kinds of all objects. The row added last that has an object says its kind. */
class ObjectKinds
{
public:
    /*! Sub-index \a sub only, or all. */
    void append(quint16 first, quint16 last, std::optional<quint8> sub, const ObjectKind &kind);

    ObjectKind find(CanOpen::ObjectKey key) const;

private:
    struct Row
    {
        quint16 first;
        quint16 last;
        std::optional<quint8> sub;
        ObjectKind kind;
    };

    QVector<Row> m_rows;
};
