// SPDX-License-Identifier: MIT
#include "ruleset.h"

#include "rulereading.h"

#include <canopen/plaintext.h>
#include <json/jsondocument.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>

QString RuleSet::shippedFolder()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/rules");
}

QString RuleSet::userFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
           + QStringLiteral("/draxel/rules");
}

QStringList RuleSet::standardFolders()
{
    QStringList folders{shippedFolder()};
    if (QDir(userFolder()).exists())
        folders.append(userFolder());
    return folders;
}

RuleSet RuleSet::load(const QStringList &folders)
{
    RuleSet rules;
    for (const QString &folder : folders)
        rules.addFolder(folder);
    return rules;
}

void RuleSet::addFolder(const QString &folder)
{
    const QDir directory(folder);
    if (!directory.exists())
        m_problems.append(tr("There is no folder %1.").arg(QDir::toNativeSeparators(folder)));
    QStringList files = directory.entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name);
    if (files.size() > mostFiles)
        m_problems.append(tr("The folder %1 has more than %2 files; the others are left out.")
                              .arg(QDir::toNativeSeparators(folder))
                              .arg(mostFiles));
    files = files.mid(0, mostFiles);
    for (const QString &name : qAsConst(files)) {
        const QString path = directory.filePath(name);
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            add(file.read(largestFile + 1), QDir::toNativeSeparators(path));
        else
            m_problems.append(
                tr("%1 could not be read: %2").arg(QDir::toNativeSeparators(path), file.errorString()));
    }
}

void RuleSet::add(const QByteArray &text, const QString &name)
{
    const auto complain = [this, &name](const QString &problem) {
        m_problems.append(CanOpen::plainText(QStringLiteral("%1: %2").arg(name, problem)));
    };
    if (text.size() > largestFile) {
        complain(tr("The file is larger than %1 bytes.").arg(largestFile));
        return;
    }
    QString error;
    const std::optional<JsonDocument> document = JsonDocument::parse(text, &error);
    if (!document) {
        complain(error);
        return;
    }
    RuleReading reading(m_positions.keys());
    JsonFault fault;
    const JsonPlace top(&fault);
    reading.read(JsonObject(document->root(), top));
    if (!fault.isEmpty())
        complain(fault.text);
    for (const QString &problem : reading.problems())
        complain(problem);
    for (auto words = reading.words().cbegin(); words != reading.words().cend(); ++words)
        m_words.insert(words.key(), words.value());
    for (const RuleReading::KindRow &row : reading.kinds())
        m_kinds.append(row.first, row.last, row.sub, row.kind);
    for (const Rule &rule : reading.rules())
        addRule(rule, name);
}

void RuleSet::addRule(const Rule &rule, const QString &name)
{
    const int position = m_positions.value(rule.id, m_rules.size());
    if (position < m_rules.size()) {
        m_rules[position] = rule;
    } else if (m_rules.size() < mostRules) {
        m_positions.insert(rule.id, position);
        m_rules.append(rule);
    } else {
        const QString problem = tr("%1: There are more than %2 rules; this file's others are left out.")
                                    .arg(name)
                                    .arg(mostRules);
        if (!m_problems.contains(problem))
            m_problems.append(problem);
    }
}
