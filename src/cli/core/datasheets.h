// SPDX-License-Identifier: MIT
#pragma once

#include "exitstatus.h"

#include <canopen/edsfile.h>

#include <QCoreApplication>
#include <QMap>
#include <QString>

#include <optional>

class CommandArguments;

/*! The option --eds N:FILE of commands that know more of a node by its EDS or DCF. */
class DataSheets
{
    Q_DECLARE_TR_FUNCTIONS(DataSheets)

public:
    static void addOption(CommandArguments &options, const QString &description);

    /*! Reads the files; an exit status after a complaint. */
    std::optional<ExitStatus> parse(const CommandArguments &options);

    /*! By node ID. */
    const QMap<quint8, CanOpen::EdsFile> &sheets() const { return m_sheets; }
    /*! That of a node; null when none was given. */
    const CanOpen::ObjectDictionary *find(quint8 nodeId) const;

private:
    QMap<quint8, CanOpen::EdsFile> m_sheets;
};
