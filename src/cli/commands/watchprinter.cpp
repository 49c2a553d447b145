// SPDX-License-Identifier: MIT
#include "watchprinter.h"

#include <checkup/objectwords.h>
#include <cli/core/console.h>
#include <cli/core/terminal.h>
#include <live/values/valuewriting.h>
#include <system/csvline.h>

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

constexpr int digits = 7; // of a fraction

QByteArray line(const QJsonObject &json)
{
    return QJsonDocument(json).toJson(QJsonDocument::Compact) + '\n';
}

/*! Which value it is, without what it is. */
QJsonObject identityOf(const WatchedValue &value)
{
    return {{QStringLiteral("node"), value.address.nodeId},
            {QStringLiteral("index"), value.address.key.index},
            {QStringLiteral("sub"), value.address.key.subIndex},
            {QStringLiteral("name"), ObjectWords::name(value.address.key)},
            {QStringLiteral("unit"), ObjectWords::unit(value.address.key).text}};
}

} // namespace

QByteArray WatchPrinter::printNew()
{
    QByteArray table;
    m_known.resize(m_values->values().size());
    for (std::size_t i = 0; i < m_known.size(); ++i) {
        const WatchedValue &value = m_values->values()[i];
        const LiveValue *live = m_values->find(value);
        Known &known = m_known[i];
        const bool isLate = m_values->isLate(value);
        if (live != nullptr && live->record.count() != known.count) {
            known.count = live->record.count();
            printValue(*live);
            const QDateTime time = m_live->timeOfDay(live->record.time());
            table += csvLine(ValueWriting::csvFields(*live, time) << QString() << QString());
        }
        if (isLate && !known.isLate) {
            printLate(value);
            table += troubleLine(value, lateSince(value).toString(Qt::ISODateWithMs), QString());
        }
        if (!value.reason.isEmpty() && value.reason != known.reason) {
            printTrouble(value, value.reason, "reason");
            table += troubleLine(value, QString(), value.reason);
        }
        known.isLate = isLate;
        known.reason = value.reason;
    }
    return table;
}

QByteArray WatchPrinter::tableHead()
{
    return csvLine(ValueWriting::csvColumns() << QStringLiteral("lateSince") << QStringLiteral("reason"));
}

QByteArray WatchPrinter::troubleLine(const WatchedValue &value, const QString &lateSince,
                                     const QString &reason) const
{
    const CanOpen::ObjectKey key = value.address.key;
    return csvLine({m_live->timeOfDay(m_live->now()).toString(Qt::ISODateWithMs),
                    QString::number(value.address.nodeId), key.toShortString(), ObjectWords::name(key),
                    QString(), ObjectWords::unit(key).text, lateSince, reason});
}

/*! When a value that is late has come last. */
QDateTime WatchPrinter::lateSince(const WatchedValue &value) const
{
    return m_live->timeOfDay(m_values->find(value)->record.time());
}

void WatchPrinter::printValue(const LiveValue &value) const
{
    const QDateTime time = m_live->timeOfDay(value.record.time());
    if (m_form == Form::Json) {
        Console::printJson(line(ValueWriting::toJson(value, time)));
        return;
    }
    const WatchedValue address{{value.nodeId, value.object}, {}, false, false, 0};
    const QString text = number(value.record.last()) + QLatin1Char(' ') + value.unit;
    Console::print(time.toString(QStringLiteral("HH:mm:ss.zzz")) + QLatin1Char(' ') + padded(label(address))
                   + text.trimmed());
}

void WatchPrinter::printLate(const WatchedValue &value) const
{
    const QDateTime since = lateSince(value);
    if (m_form == Form::Json)
        printTrouble(value, since.toString(Qt::ISODateWithMs), "lateSince");
    else
        printTrouble(value, tr("late, nothing since %1").arg(since.toString(QStringLiteral("HH:mm:ss.zzz"))),
                     "lateSince");
}

void WatchPrinter::printTrouble(const WatchedValue &value, const QString &text, const char *key) const
{
    const QDateTime now = m_live->timeOfDay(m_live->now());
    if (m_form == Form::Json) {
        QJsonObject json = identityOf(value);
        json.insert(QStringLiteral("time"), now.toString(Qt::ISODateWithMs));
        json.insert(QLatin1String(key), text);
        Console::printJson(line(json));
        return;
    }
    Console::print(now.toString(QStringLiteral("HH:mm:ss.zzz")) + QLatin1Char(' ') + padded(label(value))
                   + text);
}

void WatchPrinter::printSummary() const
{
    if (m_form == Form::Json) {
        QJsonArray all;
        for (const WatchedValue &value : m_values->values())
            all.append(summaryJson(value));
        Console::printJson(line({{QStringLiteral("summary"), all}}));
        return;
    }
    QVector<QStringList> rows{{tr("Value"), tr("Last"), tr("Smallest"), tr("Largest"), tr("Mean"), tr("Unit"),
                               tr("Count"), QString()}};
    for (const WatchedValue &value : m_values->values())
        rows.append(summaryRow(value));
    Console::print(QLatin1Char('\n') + alignedLines(rows, 0).join(QLatin1Char('\n')));
}

bool WatchPrinter::isComplete() const
{
    const std::vector<WatchedValue> &values = m_values->values();
    return std::all_of(values.begin(), values.end(),
                       [this](const WatchedValue &value) { return m_values->find(value) != nullptr; });
}

QStringList WatchPrinter::summaryRow(const WatchedValue &value) const
{
    const LiveValue *live = m_values->find(value);
    if (live == nullptr) {
        const QString reason = value.reason.isEmpty() ? tr("No value has come.") : value.reason;
        const QString none = QStringLiteral("-");
        return {label(value), none, none, none, none, none, QStringLiteral("0"), reason};
    }
    const ValueRecord &record = live->record;
    return {label(value),
            number(record.last()),
            number(record.smallest()),
            number(record.largest()),
            number(record.mean()),
            live->unit,
            QString::number(record.count()),
            m_values->isLate(value) ? tr("late") : QString()};
}

QJsonObject WatchPrinter::summaryJson(const WatchedValue &value) const
{
    QJsonObject json = identityOf(value);
    const LiveValue *live = m_values->find(value);
    json.insert(QStringLiteral("count"), live != nullptr ? double(live->record.count()) : 0);
    const auto put = [&json, live](const char *key, double number) {
        json.insert(QLatin1String(key), live != nullptr ? QJsonValue(number) : QJsonValue());
    };
    const ValueRecord record = live != nullptr ? live->record : ValueRecord();
    put("last", record.last());
    put("smallest", record.smallest());
    put("largest", record.largest());
    put("mean", record.mean());
    json.insert(QStringLiteral("fromPdo"), value.isMapped && !value.isAsked);
    json.insert(QStringLiteral("late"), m_values->isLate(value));
    json.insert(QStringLiteral("reason"), value.reason.isEmpty() ? QJsonValue() : QJsonValue(value.reason));
    return json;
}

QString WatchPrinter::label(const WatchedValue &value) const
{
    return tr("%1 (node %2, %3)")
        .arg(ObjectWords::name(value.address.key), QString::number(value.address.nodeId),
             value.address.key.toShortString());
}

/*! With blanks behind it, so that all values stand one below the other. */
QString WatchPrinter::padded(const QString &text) const
{
    constexpr int gap = 2;
    int width = 0;
    for (const WatchedValue &value : m_values->values())
        width = std::max(width, terminalWidth(label(value)));
    return text + QString(std::max(0, width - terminalWidth(text)) + gap, QLatin1Char(' '));
}

QString WatchPrinter::number(double number)
{
    return ValueWriting::numberText(number, digits);
}
