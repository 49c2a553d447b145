// SPDX-License-Identifier: MIT
#pragma once

#include "recordedanswers.h"

#include <canopen/objectdictionary.h>
#include <canopen/sdoserver.h>

#include <QCanBusFrame>
#include <QVector>

#include <map>
#include <memory>

/*! The vehicle of a trace: it answers requests to read as it answered them when it was recorded.
 *
 *  | It was asked for the object           | It answers now                                                      |
 *  |---------------------------------------|---------------------------------------------------------------------|
 *  | before the present                    | the last of these: the value, the abort code, or nothing            |
 *  | only later                            | the first of these, or abort code SdoAbort::RecordedLater           |
 *  | never, or no answer is known          | abort code SdoAbort::NotRecorded                                    |
 *  | never, and the node was never heard   | nothing: it is not there                                            |
 *
 *  Whatever would write is refused. Values go out in the protocol that is asked for now, not in the one of then.
 *  Knows no device and no clock.
 */
class RecordedVehicle
{
public:
    enum class Knowledge : quint8 {
        Nearest, //!< where there is no answer before the present, the first later one counts
        Past,    //!< only what was before the present counts
    };

    explicit RecordedVehicle(RecordedAnswers answers, Knowledge knowledge = Knowledge::Nearest);

    /*! Takes a frame of somebody on the bus when \a present frames of the trace have gone by; returns the answers. */
    QVector<QCanBusFrame> handleFrame(const QCanBusFrame &frame, size_t present);

    /*! Whether somebody has asked the node: the trace's own SDO frames of this node would be taken for answers to it. */
    bool isTalking(quint8 nodeId) const { return m_nodes.count(nodeId) > 0; }

private:
    struct Node
    {
        explicit Node(quint8 nodeId)
            : server(nodeId, &dictionary)
        {
        }

        CanOpen::ObjectDictionary dictionary; // what is being read, and no more
        CanOpen::SdoServer server;
    };

    Node &nodeOf(quint8 nodeId);
    const RecordedAnswer *find(quint8 nodeId, CanOpen::ObjectKey key, size_t present) const;
    QVector<QCanBusFrame> answerRead(quint8 nodeId, const QCanBusFrame &request, size_t present);
    QVector<QCanBusFrame> answerAs(quint8 nodeId, const QCanBusFrame &request, const RecordedAnswer &answer);
    quint32 reasonOfGap(quint8 nodeId, CanOpen::ObjectKey key, size_t present) const;

    RecordedAnswers m_answers;
    Knowledge m_knowledge;
    std::map<quint8, std::unique_ptr<Node>> m_nodes; // that were asked
};
