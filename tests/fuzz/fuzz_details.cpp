// SPDX-License-Identifier: MIT
// Whatever a device may answer, in words: the decoders, and the rows of the tables with their counts and bounds.
#include "bytereader.h"

#include <details/components.h>
#include <details/nodedetails.h>
#include <details/textrows.h>
#include <interpreter/datainterpreter.h>
#include <store/nodestore.h>
#include <store/nodeview.h>

#include <QVariant>

namespace {

constexpr quint8 nodeId = 5;

// What the tables show, so that few bytes reach most rows.
constexpr quint16 indices[]
    = {0x1000, 0x1001, 0x1018, 0x6000, 0x6001, 0x6002, 0x6003, 0x6005, 0x6008, 0x600A,
       0x600D, 0x600E, 0x6020, 0x6021, 0x6022, 0x6023, 0x6024, 0x6026, 0x6027, 0x603E,
       0x6040, 0x6041, 0x6042, 0x6046, 0x604F, 0x6080, 0x6081, 0x6100, 0x6102, 0x6105,
       0x6120, 0x6126, 0x6160, 0x6162, 0x6164, 0x6176, 0x62E8, 0x6310, 0x6311, 0x638E};

QVariant valueFrom(ByteReader &reader, quint8 kind)
{
    switch (kind & 0x03) {
    case 0:
        return uint(reader.byte());
    case 1:
        return int(reader.doubleWord());
    case 2:
        return qlonglong(reader.doubleWord()) << 32 | reader.doubleWord();
    default:
        return uint(reader.doubleWord());
    }
}

void decode(quint16 index, quint8 subIndex, const QVariant &value)
{
    QString first;
    QString second;
    QString third;
    QString fourth;
    QStringList list;
    Qt::GlobalColor color = Qt::black;
    DataInterpreter::objectName(index, subIndex);
    DataInterpreter::checkLimits(index, value);
    DataInterpreter::formatValue(index, subIndex, value);
    DataInterpreter::interpretIdentity(value, subIndex, first, second);
    DataInterpreter::interpretDeviceType(value);
    DataInterpreter::interpretErrorRegister(value);
    DataInterpreter::interpretSecurityStatus(value);
    DataInterpreter::interpretFsaState(static_cast<quint8>(value.toUInt()), color);
    DataInterpreter::interpretProcessingState(static_cast<quint8>(value.toUInt()), color);
    DataInterpreter::interpretSupportedAlarms(value);
    DataInterpreter::interpretControlCommand(value, first);
    DataInterpreter::interpretDeviceStatus(value, first, second);
    DataInterpreter::interpretSystemStatus(value);
    DataInterpreter::interpretDeviceCapability(value, list);
    DataInterpreter::interpretSpecificationVersions(value, first, second);
    DataInterpreter::interpretBatteryList(value, first, second);
    DataInterpreter::interpretSecurityProperties(value, first, second, third, fourth);
    DataInterpreter::interpretLevType(value);
    DataInterpreter::interpretBatteryChemistry(value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    ByteReader reader(data, size);
    NodeStore store;
    store.appendNode(nodeId);
    while (!reader.atEnd()) {
        const quint8 kind = reader.byte();
        const quint16 index
            = (kind & 0x80) != 0 ? reader.word() : indices[reader.byte() % std::size(indices)];
        const quint8 subIndex = (kind & 0x40) != 0 ? reader.byte() : (kind >> 2 & 0x07);
        const QVariant value = valueFrom(reader, kind);
        decode(index, subIndex, value);
        store.setValue(nodeId, index, subIndex, value);
    }
    componentsOf(NodeView(store, nodeId));
    TextRows parameters;
    TextRows values;
    NodeDetails(store, parameters, values).showNode(nodeId);
    return 0;
}
