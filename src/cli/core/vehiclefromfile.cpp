// SPDX-License-Identifier: MIT
#include "vehiclefromfile.h"

#include "openedbundle.h"

#include <bundle/bundlefile.h>
#include <snapshot/objecttypes.h>
#include <snapshot/snapshot.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

struct VehicleFromFileTr
{
    Q_DECLARE_TR_FUNCTIONS(VehicleFromFile)
};

constexpr quint16 heartbeatPeriod = 500; // ms, where nothing else is known
constexpr quint16 heartbeatTimeObject = 0x1017;

CanOpen::DataType typeByValue(const QVariant &value)
{
    return value.toLongLong() < 0 ? CanOpen::DataType::Integer32 : CanOpen::DataType::Unsigned32;
}

/*! Of an entry that came without bytes. */
std::optional<CanOpen::ObjectEntry> objectOfValue(const SnapshotEntry &entry)
{
    CanOpen::ObjectEntry object;
    object.type = ObjectTypes::known(entry.key).value(0, typeByValue(entry.value));
    const std::optional<QByteArray> data = CanOpen::encodeValue(object.type, entry.value);
    if (!data)
        return std::nullopt;
    object.data = *data;
    return object;
}

/*! Of bytes, whatever they mean. */
CanOpen::ObjectEntry objectOfBytes(const SnapshotEntry &entry)
{
    CanOpen::ObjectEntry object;
    object.type = entry.type && entry.hasValue() ? *entry.type : CanOpen::rawBytes;
    object.data = entry.raw;
    return object;
}

/*! What a node does instead of answering with a value. */
std::optional<Simulator::Fault> faultOf(const SnapshotEntry &entry)
{
    switch (entry.gap) {
    case SnapshotGap::Abort:
    case SnapshotGap::Failed: {
        Simulator::Faults::SdoAbort fault;
        fault.object = entry.key;
        fault.code = entry.abortCode;
        return fault;
    }
    case SnapshotGap::NoAnswer: {
        Simulator::Faults::SdoSilent fault;
        fault.object = entry.key;
        return fault;
    }
    default:
        return std::nullopt;
    }
}

void addEntry(const SnapshotEntry &entry, Simulator::NodeDescription *node, QStringList *warnings)
{
    if (const std::optional<Simulator::Fault> fault = faultOf(entry)) {
        node->faults.append(*fault);
    } else if (!entry.raw.isEmpty() || (entry.hasValue() && entry.type)) {
        node->dictionary.insert(entry.key, objectOfBytes(entry));
    } else if (entry.hasValue()) {
        if (const std::optional<CanOpen::ObjectEntry> object = objectOfValue(entry))
            node->dictionary.insert(entry.key, *object);
        else
            warnings->append(
                VehicleFromFileTr::tr(
                    "Node %1, object %2: the value %3 does not fit the object and is left out.")
                    .arg(QString::number(node->id), entry.key.toString(), entry.value.toString()));
    }
}

Simulator::NodeDescription nodeOf(const SnapshotNode &recorded, bool isHeartbeatKnown, QStringList *warnings)
{
    Simulator::NodeDescription node;
    node.id = recorded.id;
    node.name = VehicleFromFileTr::tr("Node %1").arg(recorded.id);
    const quint32 period = recorded.value(heartbeatTimeObject, 0).toUInt();
    node.heartbeatMs = period > 0 && period <= 0xFFFF ? static_cast<quint16>(period) : heartbeatPeriod;
    if (isHeartbeatKnown && !recorded.nmtState)
        node.heartbeatMs = quint16(0);
    if (recorded.nmtState && *recorded.nmtState != CanOpen::NmtState::BootUp)
        node.state = *recorded.nmtState;
    for (const SnapshotEntry &entry : recorded.entries)
        addEntry(entry, &node, warnings);
    return node;
}

} // namespace

Simulator::VehicleDescription vehicleFromSnapshot(const Snapshot &snapshot, QStringList *warnings)
{
    Simulator::VehicleDescription vehicle;
    if (snapshot.bitRate > 0)
        vehicle.bitRate = snapshot.bitRate;
    for (const SnapshotNode &node : snapshot.nodes)
        vehicle.nodes.append(nodeOf(node, snapshot.isOfBus(), warnings));
    return vehicle;
}

bool isSavedVehicle(const QString &fileName)
{
    return fileName.endsWith(QLatin1String(".dxxml"), Qt::CaseInsensitive)
           || fileName.endsWith(QLatin1String(".dxsnap"), Qt::CaseInsensitive)
           || BundleFile::isBundleName(fileName) || BundleFile::isBundle(fileName);
}

std::optional<Simulator::VehicleDescription> vehicleFromFile(const QString &fileName, QString *errorMessage,
                                                             QStringList *warnings)
{
    const std::optional<Snapshot> snapshot = OpenedBundle::snapshot(fileName, errorMessage);
    if (!snapshot)
        return std::nullopt;
    Simulator::VehicleDescription vehicle = vehicleFromSnapshot(*snapshot, warnings);
    if (vehicle.nodes.isEmpty()) {
        *errorMessage = VehicleFromFileTr::tr("The file %1 has no node from 1 to 127.")
                            .arg(QDir::toNativeSeparators(fileName));
        return std::nullopt;
    }
    vehicle.name = QFileInfo(fileName).completeBaseName();
    return vehicle;
}
