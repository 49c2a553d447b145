// SPDX-License-Identifier: MIT
#pragma once

#include "fakecandevice.h"

#include <canopen/cobid.h>
#include <canopen/sdoserver.h>
#include <bus/busconnection.h>

#include <QPointer>
#include <QVector>

#include <functional>
#include <map>
#include <memory>

/*! A bus whose devices are FakeCanDevice and whose nodes answer SDO at once, through the event loop. */
class FakeBus
{
public:
    FakeBus() = default;
    Q_DISABLE_COPY(FakeBus)

    /*! Prepares every device that is made from now on. */
    std::function<void(FakeCanDevice *)> prepare;
    /*! While set, no device can be made. */
    QString refusal;

    BusConnection::DeviceFactory factory()
    {
        return [this](const QString &, const QString &, QString *errorMessage) -> QCanBusDevice * {
            if (!refusal.isEmpty()) {
                *errorMessage = refusal;
                return nullptr;
            }
            auto *device = new FakeCanDevice;
            m_devices.append(device);
            if (prepare)
                prepare(device);
            QObject::connect(device, &FakeCanDevice::sent, device,
                             [this, device](const QCanBusFrame &frame) { answer(device, frame); });
            return device;
        };
    }

    /*! A node with object 1000h = 1, which aborts everything else. */
    void addNode(quint8 nodeId)
    {
        Node &node = m_nodes[nodeId];
        node.dictionary = std::make_unique<CanOpen::ObjectDictionary>();
        CanOpen::ObjectEntry entry;
        entry.data = QByteArray::fromHex("01000000");
        node.dictionary->insert({0x1000, 0}, entry);
        node.server = std::make_unique<CanOpen::SdoServer>(nodeId, node.dictionary.get());
    }

    void silence(quint8 nodeId) { m_nodes.erase(nodeId); }

    int devicesMade() const { return m_devices.size(); }

    /*! The device made last. */
    FakeCanDevice *device() const { return m_devices.isEmpty() ? nullptr : m_devices.last().data(); }

    void heartbeat(quint8 nodeId, quint8 state = 0x05) const
    {
        device()->inject(
            QCanBusFrame(CanOpen::errorControlCobId(nodeId), QByteArray(1, static_cast<char>(state))));
    }

private:
    struct Node
    {
        std::unique_ptr<CanOpen::ObjectDictionary> dictionary;
        std::unique_ptr<CanOpen::SdoServer> server;
    };

    void answer(FakeCanDevice *device, const QCanBusFrame &frame)
    {
        for (auto &[nodeId, node] : m_nodes) {
            const QVector<QCanBusFrame> answers = node.server->handleFrame(frame);
            if (!answers.isEmpty()) {
                QMetaObject::invokeMethod(
                    device, [device, answers] { device->inject(answers); }, Qt::QueuedConnection);
            }
        }
    }

    QVector<QPointer<FakeCanDevice>> m_devices;
    std::map<quint8, Node> m_nodes;
};

/*! A bus of a back end that is not watched. */
inline BusSettings fakeSettings()
{
    BusSettings settings;
    settings.address = {QStringLiteral("fake"), QStringLiteral("bus0")};
    return settings;
}
