// SPDX-License-Identifier: MIT
#pragma once

#include "healthnumbers.h"

#include <checkup/factsource.h>

/*! What rules may ask of a bus's health. The numbers have to outlive it. */
class HealthFacts : public FactSource
{
public:
    explicit HealthFacts(const HealthNumbers &numbers)
        : m_numbers(numbers)
    {
    }

    FactValue number(Fact fact, int position) const override;
    QString text(Fact fact, int position) const override;
    /*! Null: nobody has asked for objects. */
    const SnapshotNode *node(int position) const override;
    quint8 nodeId(int position) const override;

private:
    Operand ofBus(Fact fact) const;
    Operand errorOperand(quint64 number) const;
    static Operand ofNode(Fact fact, const NodeNumbers &node);
    static Operand ofHeartbeat(Fact fact, const NodeNumbers &node);
    static Operand ofSdo(Fact fact, const SdoNumbers &sdo);

    const HealthNumbers &m_numbers;
};
