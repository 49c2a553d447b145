// SPDX-License-Identifier: MIT
#pragma once

#include "fact.h"
#include "operand.h"

#include <canopen/objectkey.h>

#include <QVector>

struct SnapshotNode;

/*! A fact, or what would have had to be read for it. */
struct FactValue
{
    Operand operand;
    QVector<CanOpen::ObjectKey> missing; //!< of the node that was asked about
};

/*! What rules are applied to: some nodes, and the vehicle or bus as a whole, which is position -1. */
class FactSource
{
public:
    virtual ~FactSource() = default;

    /*! Of the number facts. Absent for what it knows nothing of. */
    virtual FactValue number(Fact fact, int position) const = 0;
    /*! Of the text facts. */
    virtual QString text(Fact fact, int position) const = 0;
    /*! Where the objects are; null when there are none. */
    virtual const SnapshotNode *node(int position) const = 0;
    /*! 0 for the whole. */
    virtual quint8 nodeId(int position) const = 0;

protected:
    FactSource() = default;
    FactSource(const FactSource &) = default;
    FactSource &operator=(const FactSource &) = default;
};
