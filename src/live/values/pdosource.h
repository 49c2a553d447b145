// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/datatype.h>
#include <canopen/objectkey.h>
#include <canopen/objectlookup.h>

#include <QVector>

#include <functional>
#include <optional>

namespace CanOpen {
class ObjectDictionary;
}
struct SnapshotNode;

/*! Where it stands what a node's PDOs carry: in what the node answered, or in its EDS or DCF. What it was made of has to
 *  outlive it.
 */
struct PdoSource
{
    quint8 nodeId = 0;
    CanOpen::ObjectLookup lookup;
    /*! The type of an object; empty when it is not known. */
    std::function<std::optional<CanOpen::DataType>(CanOpen::ObjectKey)> type;

    /*! The types that an object may have, the likeliest first: \a told when a data sheet tells it, else what is usual. As
     *  numbers that people watch, so with their sign.
     */
    static QVector<CanOpen::DataType> typesOf(CanOpen::ObjectKey key, std::optional<CanOpen::DataType> told);

    static PdoSource of(const SnapshotNode &node);
    static PdoSource of(quint8 nodeId, const CanOpen::ObjectDictionary &dictionary);
};
