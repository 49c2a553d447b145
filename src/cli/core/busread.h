// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"
#include "nodereader.h"
#include "progressline.h"
#include "readrun.h"

#include <host/core/hostservices.h>
#include <reader/datareader.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <memory>
#include <optional>

class CommandArguments;
class InterruptibleLoop;

/*! The read of a bus as a part of several commands: its options, the run, and the words when it fails.
 *
 *  Reads as the window does, or one node only, see NodeReader.
 */
class BusRead
{
    Q_DECLARE_TR_FUNCTIONS(BusRead)

public:
    /*! Adds --timeout and --retries. */
    static void addOptions(CommandArguments &options);

    /*! Takes the options; an exit status after a complaint. */
    std::optional<ExitStatus> parse(const CommandArguments &options);

    /*! Reads this node only. */
    void setNode(quint8 nodeId);

    /*! Opens the bus and reads it. An exit status when nothing can be used of it, after a sentence that says
     *  why.
     */
    std::optional<ExitStatus> read(const BusSettings &settings);

    /*! The exit status of what was read. Prints why the run was stopped early, if it was, and what could not be
     *  read.
     */
    ExitStatus finish();

    const NodeStore &store() const { return m_nodeReader ? m_nodeReader->store() : m_reader.store(); }

    /*! How it ended, and what became of every object. */
    ReadSummary summary();

    qint64 elapsed() const { return m_elapsed; } // ms

    /*! The NMT state that a node sent last. */
    NmtSender::NmtState nmtState(quint8 nodeId);

private:
    void readAll(InterruptibleLoop *loop);
    void readNode(InterruptibleLoop *loop);
    std::optional<ExitStatus> checkVehicle();
    std::optional<ExitStatus> checkNode();
    QString describeStop(const ReadSummary &summary);
    QString describeNoNode(const QList<quint8> &heard);

    HostServices m_services;
    DataReader m_reader;
    std::unique_ptr<NodeReader> m_nodeReader; // when it is one node only
    ProgressLine m_progress;
    CanOpen::SdoPatience m_patience;
    qint64 m_elapsed = 0;
};
