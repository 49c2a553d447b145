// SPDX-License-Identifier: MIT
#pragma once

#include "faultlist.h"
#include "foreignclient.h"

#include <canopen/sdoserver.h>

#include <QCanBusFrame>
#include <QVector>

#include <chrono>
#include <optional>
#include <random>

namespace Simulator {

/*! A node's SDO server, and what it does wrong. Knows no clock: its answers say how long they wait. */
class FaultySdoServer
{
public:
    struct Answer
    {
        QCanBusFrame frame;
        std::chrono::milliseconds delay{0}; // 0: goes out at once
    };
    using Answers = QVector<Answer>;

    /*! \a dictionary and \a faults are the node's and must outlive the server. */
    FaultySdoServer(quint8 nodeId, CanOpen::ObjectDictionary *dictionary, const FaultList *faults);

    /*! The object that a transfer begins with when \a request is its first; else empty. */
    static std::optional<CanOpen::ObjectKey> objectBegun(const QByteArray &request);

    /*! Takes an SDO request to the node, and gives the answers in their order. */
    Answers handleRequest(const QCanBusFrame &request);

    /*! Another client's request, and the server's answer to it: a transfer that is never gone on with. */
    QVector<QCanBusFrame> abandonedTransfer(const Faults::AbandoningClient &fault);

    /*! Drops the transfer that is under way, as a node does in state Stopped. */
    void dropTransfer();
    /*! Forgets everything but the number of requests, as a reset of the node does. */
    void reset();
    /*! Counts the requests from here on. */
    void restartCount() { m_requests = 0; }
    /*! To be called whenever the list of faults was changed. */
    void faultsChanged();

    /*! SDO requests since the count has begun. */
    qint64 requests() const { return m_requests; }

private:
    using Frames = QVector<QCanBusFrame>;

    Frames answerTo(const QCanBusFrame &request, bool begins);
    std::optional<Frames> insteadOfAnswer(const QByteArray &request, bool begins);
    std::optional<quint32> refusal(bool begins) const;
    Frames distortedAnswer(const QCanBusFrame &request, bool begins);
    Frames serverAnswer(const QCanBusFrame &request, bool begins);
    Frames lyingAnswer(const QCanBusFrame &request, const CanOpen::ObjectEntry &lie);
    Frames endlessSegment(const Faults::Endless &fault, const QByteArray &request) const;
    void multiply(Frames &frames) const;
    Frames holdBack(const Frames &frames);
    Answers timed(const Frames &frames);
    QCanBusFrame frameOf(const QByteArray &payload) const;

    quint8 m_nodeId;
    CanOpen::ObjectDictionary *m_dictionary;
    const FaultList *m_faults;
    CanOpen::SdoServer m_server;
    ForeignClient m_foreignClient;

    CanOpen::ObjectKey m_object; // of the transfer
    qint64 m_segments = 0;       // requests for segments of the transfer
    qint64 m_requests = 0;
    bool m_isHalfOpen = false;
    Frames m_heldBack; // answers that wait for the next request
    std::minstd_rand m_random;
};

} // namespace Simulator
