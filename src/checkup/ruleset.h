// SPDX-License-Identifier: MIT
#pragma once

#include "objectkinds.h"
#include "rule.h"
#include "wordtable.h"

#include <QCoreApplication>
#include <QHash>
#include <QStringList>
#include <QVector>

/*! The rules of the check-up, from the files of one or more folders. */
class RuleSet
{
    Q_DECLARE_TR_FUNCTIONS(RuleSet)

public:
    static constexpr int largestFile = 1024 * 1024; // bytes
    static constexpr int mostRules = 2000;
    static constexpr int mostFiles = 200; // of one folder

    /*! The folder "rules" beside the program. */
    static QString shippedFolder();
    /*! The user's own: "draxel/rules" in the folder for data of all programs. It need not be there. */
    static QString userFolder();
    /*! Both, the user's behind the shipped one. */
    static QStringList standardFolders();

    /*! Adds all files `*.json` of a folder, in the order of their names. A rule with the name of an earlier one takes its
     *  place, and so does a table of words. What is wrong is said in problems(); all other rules hold.
     */
    void addFolder(const QString &folder);

    /*! Adds the text of one file; \a name is for problems(). */
    void add(const QByteArray &text, const QString &name);

    static RuleSet load(const QStringList &folders = standardFolders());

    const QVector<Rule> &rules() const { return m_rules; }
    const WordTables &words() const { return m_words; }
    /*! What objects are to somebody who compares. */
    const ObjectKinds &kinds() const { return m_kinds; }
    /*! A sentence for each file or rule that could not be used, with file and place. */
    const QStringList &problems() const { return m_problems; }

private:
    void addRule(const Rule &rule, const QString &name);

    QVector<Rule> m_rules;
    QHash<QString, int> m_positions; // of rules, by their names
    WordTables m_words;
    ObjectKinds m_kinds;
    QStringList m_problems;
};
