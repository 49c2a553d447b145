// SPDX-License-Identifier: MIT
#include "vehiclefromexchange.h"

#include "readlisttypes.h"

#include <canopen/cobid.h>
#include <store/exchangefile.h>
#include <store/nodestore.h>

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(VehicleFromExchange)
};

constexpr quint16 heartbeatPeriod = 500; // ms
constexpr quint16 leftOverIndex = 0x0000;

CanOpen::DataType typeByValue(const QVariant &value)
{
    return value.toLongLong() < 0 ? CanOpen::DataType::Integer32 : CanOpen::DataType::Unsigned32;
}

std::optional<CanOpen::ObjectEntry> makeEntry(CanOpen::DataType type, const QVariant &value)
{
    const std::optional<QByteArray> data = CanOpen::encodeValue(type, value);
    if (!data)
        return std::nullopt;
    CanOpen::ObjectEntry entry;
    entry.type = type;
    entry.data = *data;
    return entry;
}

Simulator::NodeDescription makeNode(quint8 nodeId, const ObjectMap &objects, QStringList *warnings)
{
    Simulator::NodeDescription node;
    node.id = nodeId;
    node.name = Tr::tr("Node %1").arg(nodeId);
    node.heartbeatMs = heartbeatPeriod;
    for (auto object = objects.cbegin(); object != objects.cend(); ++object) {
        const CanOpen::ObjectKey key{object.key().index, object.key().subIndex};
        if (key.index == leftOverIndex)
            continue;
        const CanOpen::DataType type = readListType(key).value_or(typeByValue(object.value()));
        if (const std::optional<CanOpen::ObjectEntry> entry = makeEntry(type, object.value())) {
            node.dictionary.insert(key, *entry);
        } else {
            warnings->append(
                Tr::tr("Node %1, object %2: the value %3 does not fit the object and is left out.")
                    .arg(QString::number(nodeId), key.toString(), object.value().toString()));
        }
    }
    return node;
}

} // namespace

std::optional<Simulator::VehicleDescription> vehicleFromExchange(const QString &text, QString *errorMessage,
                                                                 QStringList *warnings)
{
    *errorMessage = exchangeProblem(text);
    if (!errorMessage->isEmpty())
        return std::nullopt;

    NodeStore store;
    importFrom(text, store);
    QList<quint8> nodeIds = store.nodeList();
    std::sort(nodeIds.begin(), nodeIds.end());
    nodeIds.erase(std::unique(nodeIds.begin(), nodeIds.end()), nodeIds.end());

    Simulator::VehicleDescription vehicle;
    for (const quint8 nodeId : qAsConst(nodeIds)) {
        if (CanOpen::isNodeId(nodeId))
            vehicle.nodes.append(makeNode(nodeId, store.objects(nodeId), warnings));
    }
    if (vehicle.nodes.isEmpty()) {
        *errorMessage = Tr::tr("There is no node from 1 to 127 in it.");
        return std::nullopt;
    }
    return vehicle;
}
