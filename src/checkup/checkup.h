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
     *  has none in it), with numbers as this language writes them (see ObjectWords::LanguageNumbers). Names and reasons
     *  are translated by the translators that are installed; whoever wants another language than the program's installs
     *  those meanwhile, as ReportLanguage does.
     *
     *  A device that did not tell who it is has the name of the one on its node in \a earlier, which may be null.
     */
    static CheckupResult judge(const Snapshot &snapshot, const RuleSet &rules, const QString &language,
                               const Snapshot *earlier = nullptr);
};
