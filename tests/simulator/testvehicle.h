// SPDX-License-Identifier: MIT
#pragma once

#include <simulator/vehicle.h>

#include <QByteArrayList>
#include <QCanBusFrame>

// Requests to the node of TestVehicle, and its answers.
constexpr char readErrorRegister[] = "4001100000000000";
const QByteArray errorRegister = "585 4f01100081000000";
constexpr char readName[] = "4008100000000000"; // "Pedelec battery", in segments
const QByteArray nameAnswer = "585 410810000f000000";

/*! A vehicle of one node, 5, with a clock that stands still until it is turned on; its frames are kept as
 *  text.
 */
class TestVehicle
{
public:
    explicit TestVehicle(const QVector<Simulator::Fault> &faults = {},
                         const QVector<Simulator::Behaviour> &behaviours = {})
        : vehicle(makeDescription(faults, behaviours))
    {
        vehicle.setClock([this] { return time; });
        vehicle.setSender([this](const QCanBusFrame &frame, quint8) { sent.append(textOf(frame)); });
    }

    /*! Frames since the last call, as "585 4f01100081000000"; remote frames end with "R" and their length. */
    QByteArrayList take()
    {
        QByteArrayList frames;
        frames.swap(sent);
        return frames;
    }

    /*! Starts the vehicle and forgets the boot-up message. */
    void startQuietly()
    {
        vehicle.start();
        sent.clear();
    }

    void pass(qint64 milliseconds)
    {
        time += milliseconds * 1000;
        vehicle.processDue();
    }

    /*! An SDO request to node 5 and the frames that follow at once. */
    QByteArrayList ask(const char *hex)
    {
        vehicle.handleFrame(QCanBusFrame(0x605, QByteArray::fromHex(hex)));
        return take();
    }

    void nmt(const char *hex) { vehicle.handleFrame(QCanBusFrame(0x000, QByteArray::fromHex(hex))); }

    static QByteArray textOf(const QCanBusFrame &frame)
    {
        const QByteArray id = QByteArray::number(frame.frameId(), 16) + ' ';
        if (frame.frameType() == QCanBusFrame::RemoteRequestFrame)
            return id + 'R' + QByteArray::number(frame.payload().size());
        return id + frame.payload().toHex();
    }

    static Simulator::VehicleDescription makeDescription(const QVector<Simulator::Fault> &faults,
                                                         const QVector<Simulator::Behaviour> &behaviours)
    {
        using namespace CanOpen;
        Simulator::NodeDescription node;
        node.id = 5;
        node.heartbeatMs = 500;
        node.faults = faults;
        node.behaviours = behaviours;
        const auto add = [&node](ObjectKey key, DataType type, Access access, const QByteArray &data) {
            ObjectEntry entry;
            entry.type = type;
            entry.access = access;
            entry.data = data;
            node.dictionary.insert(key, entry);
        };
        add({0x1001, 0}, DataType::Unsigned8, Access::ReadOnly, QByteArray::fromHex("81"));
        add({0x1008, 0}, DataType::VisibleString, Access::ReadOnly, QByteArrayLiteral("Pedelec battery"));
        add({0x1017, 0}, DataType::Unsigned16, Access::ReadWrite, QByteArray::fromHex("e803"));
        add({0x2000, 0}, DataType::Unsigned16, Access::ReadWrite, QByteArray::fromHex("3412"));
        add({0x6000, 1}, DataType::Unsigned32, Access::ReadOnly, QByteArray::fromHex("06000000"));
        Simulator::VehicleDescription vehicle;
        vehicle.nodes.append(node);
        return vehicle;
    }

    qint64 time = 0; // microseconds
    QByteArrayList sent;
    Simulator::Vehicle vehicle;
};
