// SPDX-License-Identifier: MIT
#include "deviceidentity.h"

#include "snapshot.h"

#include <interpreter/componentclass.h>
#include <interpreter/objects.h>

#include <QCoreApplication>
#include <QStringList>

namespace {

struct DeviceIdentityTr
{
    Q_DECLARE_TR_FUNCTIONS(DeviceIdentity)
};

constexpr quint16 deviceNameObject = 0x1008;
constexpr quint16 hardwareVersionObject = 0x1009;
constexpr quint16 softwareVersionObject = 0x100A;
constexpr int mostVirtualDevices = 255;

std::optional<quint32> numberOf(const SnapshotNode &node, quint16 index, quint8 subIndex)
{
    const QVariant value = node.value(index, subIndex);
    return value.isValid() && value.canConvert<uint>() ? std::optional<quint32>(value.toUInt())
                                                       : std::nullopt;
}

QString textOf(const SnapshotNode &node, quint16 index)
{
    const QVariant value = node.value(index, 0);
    return value.type() == QVariant::String ? value.toString().trimmed() : QString();
}

QVector<quint8> classesOf(const SnapshotNode &node)
{
    QVector<quint8> classes;
    const int count = static_cast<int>(
        qMin(numberOf(node, Object::virtualDevices, 0).value_or(0), quint32(mostVirtualDevices)));
    for (int s = 1; s <= count; ++s) {
        if (const auto device = numberOf(node, Object::virtualDevices, static_cast<quint8>(s)))
            classes.append(static_cast<quint8>(*device & 0xFF));
    }
    return classes;
}

} // namespace

DeviceIdentity DeviceIdentity::of(const SnapshotNode &node)
{
    DeviceIdentity identity;
    identity.vendor = numberOf(node, Object::identity, 1);
    identity.product = numberOf(node, Object::identity, 2);
    identity.revision = numberOf(node, Object::identity, 3);
    identity.serial = numberOf(node, Object::identity, 4);
    identity.partNumber = numberOf(node, Object::uniquePartNumber, 0);
    identity.deviceName = textOf(node, deviceNameObject);
    identity.hardwareVersion = textOf(node, hardwareVersionObject);
    identity.softwareVersion = textOf(node, softwareVersionObject);
    identity.classes = classesOf(node);
    return identity;
}

bool DeviceIdentity::isUnique() const
{
    return vendor && product && serial && *serial != 0;
}

QString DeviceIdentity::toKey() const
{
    if (!isUnique())
        return QString();
    return QStringLiteral("%1-%2-%3")
        .arg(*vendor, 8, 16, QLatin1Char('0'))
        .arg(*product, 8, 16, QLatin1Char('0'))
        .arg(*serial);
}

bool DeviceIdentity::isSameMake(const DeviceIdentity &other) const
{
    return vendor == other.vendor && product == other.product && classes == other.classes;
}

bool DeviceIdentity::isKnownToDiffer(const DeviceIdentity &other) const
{
    const auto differ
        = [](std::optional<quint32> one, std::optional<quint32> two) { return one && two && *one != *two; };
    const bool haveSerials = serial.value_or(0) != 0 && other.serial.value_or(0) != 0;
    return differ(vendor, other.vendor) || differ(product, other.product)
           || (haveSerials && differ(serial, other.serial));
}

QString DeviceIdentity::displayName(quint8 nodeId) const
{
    QStringList names;
    for (const quint8 code : classes) {
        const ComponentClass *componentClass = findComponentClass(code);
        const QString name
            = componentClass != nullptr ? componentClassName(*componentClass, nodeId) : QString();
        if (!name.isEmpty() && !names.contains(name))
            names.append(name);
    }
    if (names.isEmpty())
        return deviceName.isEmpty() ? DeviceIdentityTr::tr("Device") : deviceName;
    return names.join(QStringLiteral(", "));
}
