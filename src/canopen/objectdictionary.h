// SPDX-License-Identifier: MIT
#pragma once

#include "datatype.h"
#include "objectkey.h"

#include <QMap>
#include <QString>
#include <QVector>

#include <optional>

namespace CanOpen {

enum class Access { ReadOnly, WriteOnly, ReadWrite, Constant };

/*! One entry of an object dictionary: type, access and the value as its bytes on the bus. */
struct ObjectEntry
{
    QString name;
    DataType type = DataType::Unsigned32;
    Access access = Access::ReadOnly;
    QByteArray data;                // least significant byte first
    std::optional<qint64> lowLimit; // of numbers; none when empty
    std::optional<qint64> highLimit;
};

/*! The objects of one device. */
class ObjectDictionary
{
public:
    /*! Inserts the entry or replaces it. */
    void insert(ObjectKey key, const ObjectEntry &entry);

    /*! Removes the entry; nothing happens when it is absent. */
    void remove(ObjectKey key);

    /*! The entry, or null. The pointer holds until the dictionary is changed. */
    const ObjectEntry *find(ObjectKey key) const;

    /*! Whether any sub-index of \a index is present. */
    bool containsIndex(quint16 index) const;

    bool isEmpty() const { return m_entries.isEmpty(); }
    QVector<ObjectKey> keys() const;

    /*! The value of an entry; an invalid QVariant when it is absent. */
    QVariant value(ObjectKey key) const;

    /*! Gives an entry a new value, without regard to its access. False when the entry is absent or the value does not
     *  fit its type; the old value stays then.
     */
    bool setValue(ObjectKey key, const QVariant &value);

    /*! Gives an entry its bytes as they are. False when the entry is absent. */
    bool setData(ObjectKey key, const QByteArray &data);

private:
    QMap<ObjectKey, ObjectEntry> m_entries;
};

} // namespace CanOpen
