// SPDX-License-Identifier: MIT
#pragma once

#include <simulator/vehicle.h>

#include <QByteArrayList>
#include <QCanBusFrame>

/*! Makes a node object by object. It has no heartbeat and no boot-up message, so that only its PDOs, SYNCs and emergencies
 *  are heard.
 */
class NodeMaker
{
public:
    explicit NodeMaker(quint8 id)
    {
        node.id = id;
        node.heartbeatMs = 0;
        node.bootUp = false;
    }

    NodeMaker &u8(quint16 index, quint8 sub, uint value)
    {
        return add(index, sub, CanOpen::DataType::Unsigned8, value);
    }
    NodeMaker &u16(quint16 index, quint8 sub, uint value)
    {
        return add(index, sub, CanOpen::DataType::Unsigned16, value);
    }
    NodeMaker &u32(quint16 index, quint8 sub, uint value)
    {
        return add(index, sub, CanOpen::DataType::Unsigned32, value);
    }
    NodeMaker &i16(quint16 index, quint8 sub, int value)
    {
        return add(index, sub, CanOpen::DataType::Integer16, value);
    }

    /*! Parameter and mapping of a PDO; \a inhibit in steps of 100 us, \a timer in ms. */
    NodeMaker &pdo(quint16 index, uint cobId, uint type, uint inhibit, uint timer,
                   const QVector<uint> &mapping)
    {
        u8(index, 0, 5).u32(index, 1, cobId).u8(index, 2, type).u16(index, 3, inhibit).u16(index, 5, timer);
        const auto mappingIndex = static_cast<quint16>(index + 0x200);
        u8(mappingIndex, 0, static_cast<uint>(mapping.size()));
        for (int i = 0; i < mapping.size(); ++i)
            u32(mappingIndex, static_cast<quint8>(i + 1), mapping.at(i));
        return *this;
    }

    /*! A value that is one more every \a interval ms, from 0 on. */
    NodeMaker &counts(quint16 index, quint8 sub, double interval)
    {
        Simulator::Behaviour behaviour;
        behaviour.object = {index, sub};
        behaviour.kind = Simulator::BehaviourKind::Counter;
        behaviour.intervalMs = interval;
        node.behaviours.append(behaviour);
        return *this;
    }

    NodeMaker &fault(const Simulator::Fault &fault)
    {
        node.faults.append(fault);
        return *this;
    }

    Simulator::NodeDescription node;

private:
    NodeMaker &add(quint16 index, quint8 sub, CanOpen::DataType type, const QVariant &value)
    {
        CanOpen::ObjectEntry entry;
        entry.type = type;
        entry.access = CanOpen::Access::ReadWrite;
        entry.data = CanOpen::encodeValue(type, value).value_or(QByteArray());
        node.dictionary.insert({index, sub}, entry);
        return *this;
    }
};

/*! A vehicle with a clock that stands still until it is turned on; its frames are kept with their time in ms. */
class ProcessVehicle
{
public:
    explicit ProcessVehicle(const QVector<Simulator::NodeDescription> &nodes, double speed = 1)
        : vehicle(descriptionOf(nodes, speed))
    {
        vehicle.setClock([this] { return time; });
        vehicle.setSender([this](const QCanBusFrame &frame, quint8) {
            sent.append(QByteArray::number(time / 1000) + ' ' + QByteArray::number(frame.frameId(), 16) + ' '
                        + frame.payload().toHex());
        });
    }

    /*! Frames since the last call, as "100 182 3412": ms, COB-ID, bytes. */
    QByteArrayList take()
    {
        QByteArrayList frames;
        frames.swap(sent);
        return frames;
    }

    QByteArrayList start()
    {
        vehicle.start();
        return take();
    }

    /*! Time passes in steps of a millisecond. */
    QByteArrayList pass(int milliseconds)
    {
        for (int i = 0; i < milliseconds; ++i) {
            time += 1000;
            vehicle.processDue();
        }
        return take();
    }

    QByteArrayList receive(quint32 cobId, const char *hex)
    {
        vehicle.handleFrame(QCanBusFrame(cobId, QByteArray::fromHex(hex)));
        return take();
    }

    /*! A frame with an identifier of 29 bits. */
    QByteArrayList receiveExtended(quint32 cobId, const char *hex)
    {
        QCanBusFrame frame(cobId, QByteArray::fromHex(hex));
        frame.setExtendedFrameFormat(true);
        vehicle.handleFrame(frame);
        return take();
    }

    uint value(quint8 nodeId, quint16 index, quint8 sub)
    {
        return vehicle.node(nodeId)->dictionary().value({index, sub}).toUInt();
    }

    qint64 time = 0; // microseconds
    QByteArrayList sent;
    Simulator::Vehicle vehicle;

private:
    static Simulator::VehicleDescription descriptionOf(const QVector<Simulator::NodeDescription> &nodes,
                                                       double speed)
    {
        Simulator::VehicleDescription description;
        description.nodes = nodes;
        description.speed = speed;
        return description;
    }
};
