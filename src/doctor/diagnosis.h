// SPDX-License-Identifier: MIT
#pragma once

#include "computerfacts.h"

#include <checkup/findings.h>

#include <QCoreApplication>

/*! One thing about a computer. */
struct Diagnosed
{
    QString topic;   //!< for programs: "interface"
    QString subject; //!< "can0"; may be empty
    ComponentState state = ComponentState::Good;
    QString text;         //!< a sentence
    QStringList commands; //!< that mend it, one after the other; empty where none does
};

/*! Says what a computer lacks for CAN, and what mends it. */
class Diagnosis
{
    Q_DECLARE_TR_FUNCTIONS(Diagnosis)

public:
    /*! The interfaces first. */
    static QVector<Diagnosed> of(const ComputerFacts &facts);

    /*! The worst state of them. */
    static ComponentState worst(const QVector<Diagnosed> &all);

private:
    static void judgeKernel(const ComputerFacts &facts, QVector<Diagnosed> *all);
    static void judgePresence(const ComputerFacts &facts, QVector<Diagnosed> *all);
    static void judgeInterface(const InterfaceFacts &interface, QVector<Diagnosed> *all);
    static Diagnosed controllerOf(const InterfaceFacts &interface);
    static void judgeSending(const InterfaceFacts &interface, QVector<Diagnosed> *all);
    static void judgeAdapters(const ComputerFacts &facts, QVector<Diagnosed> *all);
    static void judgeRights(const ComputerFacts &facts, QVector<Diagnosed> *all);
    static void judgeTools(const ComputerFacts &facts, QVector<Diagnosed> *all);
    static void judgeBackEnds(const ComputerFacts &facts, QVector<Diagnosed> *all);
    static QString counters(const ControllerFacts &controller);
};
