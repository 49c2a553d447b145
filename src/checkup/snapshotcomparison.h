// SPDX-License-Identifier: MIT
#pragma once

#include "comparison.h"
#include "findings.h"

#include <QCoreApplication>

class ObjectKinds;
struct Snapshot;

/*! What has changed from one snapshot to a later one. */
class SnapshotComparison
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotComparison)

public:
    /*! One side of a comparison; what it points to stays the caller's. Without a check-up no findings are compared. */
    struct Side
    {
        const Snapshot *snapshot = nullptr;
        const CheckupResult *checkup = nullptr;
    };

    /*! \a kinds says what objects are to somebody who compares, see RuleSet::kinds(). Texts are translated; those of
     *  findings stand as they are, and numbers are written as their language does.
     */
    static Comparison compare(const Side &before, const Side &after, const ObjectKinds &kinds);
};
