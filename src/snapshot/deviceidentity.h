// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVector>

#include <optional>

struct SnapshotNode;

/*! Who a device says that it is: identity object 1018h, names 1008h to 100Ah (CiA 301), unique part number 6005h
 *  (CiA 454). What was not read is empty.
 */
struct DeviceIdentity
{
    std::optional<quint32> vendor;
    std::optional<quint32> product;
    std::optional<quint32> revision;
    std::optional<quint32> serial;
    std::optional<quint32> partNumber;
    QString deviceName;
    QString hardwareVersion;
    QString softwareVersion;
    /*! Codes of the classes of its virtual devices, in their order (low 8 bits of 6000h.1 on, CiA 454). */
    QVector<quint8> classes;

    static DeviceIdentity of(const SnapshotNode &node);

    /*! Whether vendor, product and serial number were read and the serial number is not 0: then it tells the device
     *  from every other one.
     */
    bool isUnique() const;

    /*! Vendor, product and serial number as a text that is the same for the same device, "0000fffe-0045472a-1123450";
     *  empty when the identity is not unique.
     */
    QString toKey() const;

    /*! Whether both are of the same make: vendor, product and classes are equal. */
    bool isSameMake(const DeviceIdentity &other) const;

    /*! Whether vendor, product or serial number are known of both and not the same: then they are two devices. A serial
     *  number of 0 is none.
     */
    bool isKnownToDiffer(const DeviceIdentity &other) const;

    /*! What a person calls it, translated: "Battery Pack", "Draxel Controller, Security device"; the device name when
     *  there is no known class, and "Device" when there is none either. \a nodeId as for componentClassName().
     */
    QString displayName(quint8 nodeId) const;
};
