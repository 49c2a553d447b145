// SPDX-License-Identifier: MIT
#pragma once

#include "readobserver.h"
#include "readpace.h"

#include <QCoreApplication>
#include <QStringList>

/*! How a read went, in words: the same in the window and on the command line. */
class ReadWords
{
    Q_DECLARE_TR_FUNCTIONS(ReadWords)

public:
    /*! What is known of a node that does not answer. */
    enum class Silence {
        Unexplained,
        Stopped,    //!< in the NMT state Stopped no node answers (CiA 301)
        Restarting, //!< it sends one boot-up message after the other
        BusFull     //!< what it sends may find no room on the bus
    };

    /*! How it ended, and what came of it; \a silence of the node where it stopped. */
    static QString end(const ReadSummary &summary, Silence silence);

    /*! "values: 53, objects not there: 147, failed: 0" */
    static QString counts(const ReadCounts &counts);

    /*! That nodes may be missing in a read, as the bus was full while they were looked for. */
    static QString nodesMayBeMissing();

    /*! That these nodes were asked in vain on a bus without room, so that they may be there. */
    static QString unknownNodes(const QVector<quint8> &nodeIds);

    /*! That the node is used by somebody else as well. */
    static QString foreignClient(quint8 nodeId);

    /*! Where a read is: "Reading node 5 (3 of 7), object 6000h ..." */
    static QString place(const ReadPace &pace, quint8 nodeId, const CanOpen::ObjectKey &key);

    /*! "12 s left"; empty while it is too early to say. */
    static QString timeLeft(const ReadPace &pace);

    /*! What failed: a sentence for each node and reason, with its objects. */
    static QStringList failures(const QVector<FailedObject> &failed);

private:
    static QString stop(const ReadSummary &summary, Silence silence);
    static QString endOfDetection(const ReadSummary &summary, Silence silence);
};
