// SPDX-License-Identifier: MIT
#pragma once

#include "expressionparser.h"
#include "objectkinds.h"
#include "rule.h"
#include "wordtable.h"

#include <json/jsonobject.h>

#include <QCoreApplication>
#include <QStringList>
#include <QVector>

/*! Takes a rule file apart. Each rule is read for itself: one that is wrong is left out and said. */
class RuleReading
{
    Q_DECLARE_TR_FUNCTIONS(RuleReading)

public:
    static constexpr int version = 1; //!< the highest one that is known

    /*! \a known are the names of the rules in the files before. */
    explicit RuleReading(const QStringList &known)
        : m_known(known)
    {
    }

    void read(const JsonObject &document);

    const QVector<Rule> &rules() const { return m_rules; }
    const WordTables &words() const { return m_words; }
    struct KindRow
    {
        quint16 first = 0;
        quint16 last = 0;
        std::optional<quint8> sub;
        ObjectKind kind;
    };
    const QVector<KindRow> &kinds() const { return m_kinds; }
    const QStringList &problems() const { return m_problems; }

private:
    using Loops = QVector<ExpressionParser::Loop>;

    void readRule(const JsonObject &object, const JsonFault &fault);
    void readKind(const JsonObject &object, const JsonFault &fault);
    void readWords(const JsonObject &tables);
    static WordTable tableOf(const JsonObject &tables, const char *name);
    static KindRow kindOf(const JsonObject &object);
    static void readObjects(const JsonObject &object, KindRow *row);
    static QString oneOf(const char *words);
    Rule ruleOf(const JsonObject &object) const;
    void switchOff(const JsonObject &object, Rule *rule) const;
    static void checkVehicleRule(const JsonObject &object, const Rule &rule);
    static void readClasses(const JsonObject &object, Rule *rule);
    static Loops readLoops(const JsonObject &object, Rule *rule);
    static bool readLoop(const QString &text, const Loops &known, ExpressionParser::Loop *loop,
                         RuleLoop *read, QString *problem);
    static void readNeeds(const JsonObject &object, const Loops &loops, Rule *rule);
    static void readCases(const JsonObject &object, const Loops &loops, Rule *rule);
    static RuleCase caseOf(const JsonObject &object, const Loops &loops, const RuleCase &common);
    static Expression formulaOf(const JsonObject &object, const char *key, const Loops &loops);
    static LocalText<TextTemplate> textOf(const JsonObject &object, const char *key, const Loops &loops);
    static LocalText<QString> plainTextOf(const JsonObject &object, const char *key);
    static qint64 codeOf(const JsonObject &object, const char *key);

    QStringList m_known; // names of rules
    QVector<Rule> m_rules;
    WordTables m_words;
    QVector<KindRow> m_kinds;
    QStringList m_problems;
};
