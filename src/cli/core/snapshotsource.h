// SPDX-License-Identifier: MIT
#pragma once

#include "bussnapshot.h"
#include "exitstatus.h"

#include <snapshot/snapshot.h>

#include <QCoreApplication>

#include <memory>
#include <optional>

class CommandArguments;

/*! Where a command has a snapshot from: a file, or a bus of which it takes one. */
class SnapshotSource
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotSource)

public:
    /*! Adds --bus and the options of a snapshot. */
    static void addOptions(CommandArguments &options);

    /*! Reads the file, or takes the options for the bus when \a fileName is empty; both must not be there. An exit status
     *  after a complaint.
     */
    std::optional<ExitStatus> parse(const CommandArguments &options, const QString &fileName);

    /*! Reads the file or the bus; an exit status when there is nothing of any use, after a sentence that says why. */
    std::optional<ExitStatus> load();

    const Snapshot &snapshot() const { return m_bus != nullptr ? m_bus->snapshot() : m_snapshot; }

    /*! 0, or what became of the bus, see BusSnapshot::finish(). */
    ExitStatus finish() const { return m_bus != nullptr ? m_bus->finish() : Exit::success; }

private:
    const CommandArguments *m_options = nullptr;
    QString m_fileName;
    Snapshot m_snapshot;
    std::unique_ptr<BusSnapshot> m_bus; // null for a file
};

/*! A snapshot or an exchange file; an exit status after a sentence that says what is wrong. */
std::optional<ExitStatus> loadSnapshot(const QString &fileName, Snapshot *snapshot);
