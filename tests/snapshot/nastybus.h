// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/cobid.h>
#include <canopen/sdoclient.h>
#include <canopen/sdoserver.h>
#include <canopen/uploadgate.h>

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <map>
#include <memory>
#include <random>

/*! What is wrong with a node of a NastyBus and the line to it. */
struct NodeHabits
{
    bool isDead = false;
    bool refusesAll = false;
    bool isSegmented = false; // also what one frame could hold
    int delay = 0;            // ms
    int spread = 0;           // ms, at chance on top of it
    int lost = 0;             // of 100 frames
    int doubled = 0;          // of 100 answers
    int silentFrom = 0;       // requests; 0: never
};

/*! A client and SDO servers behind lines that lose, double and delay, in the event loop's time. */
class NastyBus : public QObject
{
public:
    explicit NastyBus(quint32 seed = 1)
        : client([this](const QCanBusFrame &frame) { return send(frame); },
                 [this] { return std::chrono::milliseconds(clock.elapsed()); })
        , random(seed)
    {
        clock.start();
    }

    struct Node
    {
        CanOpen::ObjectDictionary dictionary;
        std::unique_ptr<CanOpen::SdoServer> server;
        NodeHabits habits;
        int requests = 0;
        bool isStopped = false;
        qint64 lastArrival = 0; // ms
    };

    /*! A node with an identity, an array with a hole, a text and a PDO. */
    Node &addNode(quint8 id, const NodeHabits &habits = NodeHabits())
    {
        Node &node = nodes[id];
        node.habits = habits;
        const QByteArray own(1, static_cast<char>(id));
        set(node, 0x1000, 0, QByteArray::fromHex("C6010000"));
        set(node, 0x1001, 0, QByteArray(1, '\0'));
        set(node, 0x1008, 0, "Device " + own.toHex());
        set(node, 0x100A, 0, "software version 1.2.3 of the 4th of May");
        set(node, 0x1018, 0, QByteArray(1, '\4'));
        for (quint8 subIndex = 1; subIndex <= 4; ++subIndex)
            set(node, 0x1018, subIndex,
                own + QByteArray(2, '\0') + QByteArray(1, static_cast<char>(subIndex)));
        set(node, 0x6005, 0, own + QByteArray::fromHex("000001"));
        set(node, 0x6020, 0, QByteArray(1, '\2'));
        set(node, 0x6020, 1, own + '\1');
        set(node, 0x6020, 2, own + '\2');
        set(node, 0x60A0, 0, QByteArray(1, '\3'));
        set(node, 0x60A0, 2, own + QByteArray::fromHex("02AABBCC"));
        set(node, 0x60A0, 3, own + QByteArray::fromHex("03"));
        set(node, 0x1802, 0, QByteArray(1, '\2'));
        set(node, 0x1802, 1, QByteArray::fromHex("85020000"));
        set(node, 0x1802, 2, QByteArray::fromHex("FF"));
        set(node, 0x1A02, 0, QByteArray(1, '\1'));
        set(node, 0x1A02, 1, QByteArray::fromHex("10012060"));
        node.server = std::make_unique<CanOpen::SdoServer>(id, &node.dictionary);
        node.server->setSegmented(habits.isSegmented);
        return node;
    }

    static void set(Node &node, quint16 index, quint8 subIndex, const QByteArray &data)
    {
        CanOpen::ObjectEntry entry;
        entry.type = CanOpen::DataType::OctetString;
        entry.data = data;
        node.dictionary.insert({index, subIndex}, entry);
    }

    int chance(int bound) { return static_cast<int>(random() % static_cast<quint32>(bound)); }

    QElapsedTimer clock;
    CanOpen::SdoClient client;
    std::map<quint8, Node> nodes;
    bool isLost = false;
    int refusedFrames = 0; // that may not be sent
    int requests = 0;      // frames
    int answers = 0;       // frames
    std::mt19937 random;

private:
    CanOpen::Sending send(const QCanBusFrame &frame)
    {
        if (isLost)
            return CanOpen::Sending::Dropped;
        ++requests;
        refusedFrames += CanOpen::isUploadRequest(frame) ? 0 : 1;
        const quint8 id = CanOpen::nodeIdOf(frame.frameId(), CanOpen::sdoRequestBase);
        const auto node = nodes.find(id);
        if (node != nodes.end() && !isSilent(node->second))
            answer(node->second, frame);
        return CanOpen::Sending::Written;
    }

    bool isSilent(Node &node)
    {
        ++node.requests;
        const bool isOver = node.habits.silentFrom > 0 && node.requests >= node.habits.silentFrom;
        return node.habits.isDead || node.isStopped || isOver || chance(100) < node.habits.lost;
    }

    void answer(Node &node, const QCanBusFrame &request)
    {
        QVector<QCanBusFrame> frames;
        const bool asks = (static_cast<quint8>(request.payload().at(0)) & 0xE0) == 0x40;
        if (node.habits.refusesAll && asks)
            frames.append(QCanBusFrame(request.frameId() - 0x80, QByteArray::fromHex("80")
                                                                     + request.payload().mid(1, 3)
                                                                     + QByteArray::fromHex("00000008")));
        else if (!node.habits.refusesAll)
            frames = node.server->handleFrame(request);
        for (const QCanBusFrame &frame : qAsConst(frames)) {
            if (chance(100) < node.habits.lost)
                continue;
            deliver(node, frame);
            if (chance(100) < node.habits.doubled)
                deliver(node, frame);
        }
    }

    void deliver(Node &node, const QCanBusFrame &frame)
    {
        const int spread = node.habits.spread > 0 ? chance(node.habits.spread) : 0;
        ++answers;
        const qint64 now = clock.elapsed();
        node.lastArrival = std::max(node.lastArrival, now + node.habits.delay + spread);
        QTimer::singleShot(static_cast<int>(node.lastArrival - now), Qt::PreciseTimer, this, [this, frame] {
            if (!isLost)
                client.handleFrame(frame);
        });
    }
};
