// SPDX-License-Identifier: MIT
#pragma once

#include "datatype.h"
#include "objectkey.h"
#include "objectlookup.h"
#include "pdobits.h"

#include <QVector>

#include <optional>

namespace CanOpen {

/*! One object in a PDO (CiA 301). As a 32-bit value: bits 16 to 31 index, 8 to 15 sub-index, 0 to 7 length in bits. */
struct PdoMappingEntry
{
    ObjectKey object;
    quint8 bits = 0;

    static PdoMappingEntry fromValue(quint32 value);
    quint32 toValue() const;

    /*! Whether it only fills a place: index 1h to 1Fh, the code of a data type. */
    bool isDummy() const { return object.index != 0 && object.index <= 0x1F; }
};

constexpr bool operator==(const PdoMappingEntry &a, const PdoMappingEntry &b)
{
    return a.object == b.object && a.bits == b.bits;
}

/*! The value of one mapped object as it stood in a frame. */
struct PdoValue
{
    ObjectKey object;
    int bits = 0;
    QByteArray data; //!< least significant byte first; empty when the frame ends before it
};

/*! Which objects a PDO carries, in their order. It holds whatever a device tells: check it with problem(). */
struct PdoMapping
{
    enum class Problem {
        None,
        NotThere,      //!< there is no such mapping object, or its number of entries was not told
        IsMultiplexed, //!< sub-index 0 is 254 or 255: an MPDO, which tells its object in each frame
        TooMany,       //!< sub-index 0 tells more than 64 entries
        EntryMissing,  //!< fewer entries are there than sub-index 0 tells
        EmptyEntry,    //!< an entry has the length 0
        TooLong,       //!< more than 64 bits in all
    };

    QVector<PdoMappingEntry> entries;
    Problem problem = Problem::None; //!< the first that was met; entries then has what came before it

    int bits() const;
    /*! Bytes of a frame with this mapping. */
    int bytes() const { return (bits() + 7) / 8; }
    bool contains(ObjectKey object) const;
};

constexpr int mostMappedObjects = 64;

/*! The mapping object \a index, 1600h to 17FFh or 1A00h to 1BFFh. At most 64 entries are asked for, whatever the device
 *  tells.
 */
PdoMapping readPdoMapping(const ObjectLookup &lookup, quint16 index);

/*! The values of \a payload by \a mapping, one for each entry but the dummies; what lies beyond the payload is empty. */
QVector<PdoValue> unpackPdo(const PdoMapping &mapping, const QByteArray &payload);

/*! The bytes of a mapped value as the object's \a type has them: where fewer bits are mapped, numbers are filled up with
 *  their sign. Empty when \a data, whose \a bits are used, does not fit the type.
 */
std::optional<QByteArray> widenMapped(DataType type, const QByteArray &data, int bits);

} // namespace CanOpen
