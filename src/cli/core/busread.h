// SPDX-License-Identifier: MIT
#pragma once

#include "progressline.h"
#include "readrun.h"

#include <host/core/hostservices.h>
#include <reader/datareader.h>

#include <QCoreApplication>

#include <optional>

class CommandArguments;

/*! The read of a bus as a part of several commands: its options, the run, and the words when it fails. */
class BusRead
{
    Q_DECLARE_TR_FUNCTIONS(BusRead)

public:
    /*! Adds --timeout and --retries. */
    static void addOptions(CommandArguments &options);

    /*! Takes the options; an exit status after a complaint. */
    std::optional<int> parse(const CommandArguments &options);

    /*! Opens the bus and reads it. An exit status when nothing can be used of it, after a sentence that says
     *  why.
     */
    std::optional<int> read(const BusSettings &settings);

    /*! The exit status of what was read. Prints why the run was stopped early, if it was, and what could not be
     *  read.
     */
    int finish();

    /*! What became of every object. */
    const ReadRecord &record() { return m_services.reads().summary().record; }

    const DataReader &reader() const { return m_reader; }
    const ReadRun &run() const { return m_run; }

    /*! The NMT state that a node sent last. */
    NmtSender::NmtState nmtState(quint8 nodeId);

private:
    QString describeStop();
    QString describeNoNode(const QList<quint8> &heard);

    HostServices m_services;
    DataReader m_reader;
    ProgressLine m_progress;
    ReadRun m_run{&m_services, &m_reader, &m_progress};
    CanOpen::SdoPatience m_patience;
};
