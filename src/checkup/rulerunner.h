// SPDX-License-Identifier: MIT
#pragma once

#include "findings.h"
#include "rule.h"
#include "wordtable.h"

#include <QString>
#include <QVector>

class ComponentGaps;
class Evaluation;
class FactSource;

/*! Applies rules to the nodes of a vehicle, one after the other, within a bound for all of them together: rules come from
 *  files, and two loops of a rule over many nodes can be a lot of work.
 */
class RuleRunner
{
public:
    static constexpr qint64 mostSteps = 4'000'000; //!< objects and facts that rules may ask for
    static constexpr int mostFindings = 500;       //!< of a component

    RuleRunner(const FactSource &vehicle, const WordTables &words, const QString &language);

    /*! Appends what a rule finds in the node at a position (-1: in the vehicle), and what it would have needed. */
    void apply(const Rule &rule, int position, QVector<Finding> *findings, ComponentGaps *gaps);

    /*! Whether the bound was met; rules are not applied any more then. */
    bool isExhausted() const { return m_steps > mostSteps; }

private:
    void runLoop(const Rule &rule, int loop, Evaluation &evaluation);
    int lastOf(const Rule &rule, const RuleLoop &loop, Evaluation &evaluation);
    void runInstance(const Rule &rule, Evaluation &evaluation);
    bool isMet(const Rule &rule, const Expression &condition, Evaluation &evaluation);
    void find(const Rule &rule, int position, Evaluation &evaluation);
    static QString instanceOf(const Rule &rule, int position, const Evaluation &evaluation);
    bool isFull() const;

    const FactSource &m_vehicle;
    const WordTables &m_words;
    QString m_language;
    qint64 m_steps = 0;
    int m_position = -1;
    QVector<Finding> *m_findings = nullptr;
    ComponentGaps *m_gaps = nullptr;
};
