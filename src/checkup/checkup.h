// SPDX-License-Identifier: MIT
#pragma once

#include "findings.h"

#include <QCoreApplication>
#include <QString>

struct Snapshot;
class RuleSet;

/*! Judges a snapshot by rules. */
class Checkup
{
    Q_DECLARE_TR_FUNCTIONS(Checkup)

public:
    /*! A component for each node of the snapshot. The rules' texts are in \a language ("de", "zh_CN"; English if a rule
     *  has none in it), the names of components and the reasons in the language of the program.
     */
    static CheckupResult judge(const Snapshot &snapshot, const RuleSet &rules, const QString &language);
};
