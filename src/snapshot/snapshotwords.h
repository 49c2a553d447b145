// SPDX-License-Identifier: MIT
#pragma once

#include "snapshot.h"

#include <QCoreApplication>
#include <QString>

/*! What snapshots say to people, translated. */
class SnapshotWords
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotWords)

public:
    /*! Why an entry has no value: "The device does not answer." Empty for an entry with a value. */
    static QString reason(const SnapshotEntry &entry);

    /*! How the reading of a node ended, a sentence; empty for Complete. */
    static QString ending(SnapshotEnd end);
};
