// SPDX-License-Identifier: MIT
#pragma once

#include "datasheets.h"
#include "exitstatus.h"
#include "traceinput.h"

#include <snapshot/snapshot.h>
#include <trace/playback/tracesnapshot.h>

#include <QCoreApplication>
#include <QString>

#include <optional>

class CommandArguments;

/*! The snapshot of a trace as a part of a command: its options, the reading, and the words when it fails. */
class RecordedSnapshot
{
    Q_DECLARE_TR_FUNCTIONS(RecordedSnapshot)

public:
    /*! Adds --from-trace and --channel; --eds belongs to it as well. */
    static void addOptions(CommandArguments &options);
    static bool isWanted(const CommandArguments &options);

    /*! Takes the options; an exit status after a complaint. */
    std::optional<ExitStatus> parse(const CommandArguments &options);

    /*! Reads the trace to its end. An exit status when there is nothing of any use, after a sentence that says why. */
    std::optional<ExitStatus> take();

    /*! Without notes. */
    const Snapshot &snapshot() const { return m_snapshot; }

    /*! Says what a person must know beside the snapshot; the status of an interrupted command when a signal has ended the input,
     *  4 when the snapshot has gaps, else the status of reading the file. */
    ExitStatus finish() const;

private:
    bool isWanted(const TraceFrame &frame);
    ExitStatus describeFailure() const;

    QString m_fileName;
    QString m_channelName; // empty: that of the first frame
    std::optional<quint8> m_channel;
    bool m_hasOthers = false; // channels
    TraceInput m_input;
    DataSheets m_sheets;
    TraceSnapshot m_maker;
    Snapshot m_snapshot;
};
