// SPDX-License-Identifier: MIT
#pragma once

#include "busread.h"
#include "exitstatus.h"

#include <store/nodestore.h>

#include <memory>
#include <optional>

class CommandArguments;

/*! Where a command has its vehicle from: an exchange file, or a bus that it reads first. */
class VehicleSource
{
    Q_DECLARE_TR_FUNCTIONS(VehicleSource)

public:
    /*! Adds FILE, --bus, and the options of a read. */
    static void addOptions(CommandArguments &options);

    /*! Takes the options, which must outlive this; an exit status after a complaint. */
    std::optional<ExitStatus> parse(const CommandArguments &options);

    /*! Reads the file or the bus. An exit status when nothing can be used of it, after a sentence that says
     *  why.
     */
    std::optional<ExitStatus> load();

    const NodeStore &store() const;

    /*! The file or the bus, for sentences. */
    QString name() const;

    /*! The text of the NMT state that a node sent last; empty for a file. */
    QString nmtState(quint8 nodeId) const;

    /*! The exit status of what was read. Prints why a read was stopped early, if it was. */
    ExitStatus finish() const;

private:
    const CommandArguments *m_options = nullptr;
    NodeStore m_fileStore;
    std::unique_ptr<BusRead> m_bus; // null for a file
};
