// SPDX-License-Identifier: MIT
#pragma once

#include "healthnumbers.h"

#include <checkup/findings.h>
#include <checkup/ruleset.h>

#include <QCoreApplication>
#include <QString>
#include <QVector>

/*! One light over a bus: shape and colour by its state, and one sentence. */
struct HealthLight
{
    enum class Subject : quint8 { Load, Nodes, Errors };

    Subject subject = Subject::Load;
    ComponentState state = ComponentState::NotChecked;
    QString text;
    QVector<Finding> findings; //!< the worst first
};

/*! The lights of a bus, by rules. */
class HealthJudgement
{
    Q_DECLARE_TR_FUNCTIONS(HealthJudgement)

public:
    /*! Three lights: load, nodes and errors. A rule is for the load when its name begins with "load-", for the errors with
     *  "errors-"; every other one is for the nodes. The rules' sentences are in \a language.
     */
    static QVector<HealthLight> judge(const HealthNumbers &numbers, const RuleSet &rules,
                                      const QString &language);

    /*! The worst state of them. */
    static ComponentState worst(const QVector<HealthLight> &lights);

    /*! The rules for the health of a bus: "health" in the folders of the check-up's rules. */
    static QStringList ruleFolders();

    /*! For programs: "load", "nodes", "errors". */
    static QString word(HealthLight::Subject subject);

private:
    static QString goodSentence(HealthLight::Subject subject, const HealthNumbers &numbers);
    static QString unknownSentence(HealthLight::Subject subject, const HealthNumbers &numbers);
    static QString sentence(const HealthLight &light, const HealthNumbers &numbers);
    static ComponentState stateOf(const HealthLight &light, bool isAllKnown);
};
