// SPDX-License-Identifier: MIT
#include "shownvehicle.h"

#include <store/nodestore.h>

#include <QFileInfo>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace {

constexpr quint8 controllerNode = 1;
constexpr quint16 identityObject = 0x1018;
constexpr quint8 serialNumberEntry = 4;

QString shown(const QDateTime &time)
{
    return QLocale().toString(time, QLocale::ShortFormat);
}

QString numbers(const QSet<quint8> &nodes)
{
    QList<quint8> sorted = nodes.values();
    std::sort(sorted.begin(), sorted.end());
    QStringList texts;
    for (const quint8 node : sorted)
        texts.append(QString::number(node));
    return texts.join(QLatin1String(", "));
}

} // namespace

QString ShownVehicle::title() const
{
    const QString file = QFileInfo(m_fileName).fileName();
    switch (m_source) {
    case Source::None:
        return QString();
    case Source::File:
        return m_serialNumber == 0 ? file : QStringLiteral("%1 (%2)").arg(file, vehicleName());
    case Source::Bus:
        return m_fileName.isEmpty() ? busTitle() : QStringLiteral("%1 (%2)").arg(file, busTitle());
    }
    return QString();
}

QString ShownVehicle::suggestedFileName() const
{
    const QDateTime time = m_time.isValid() ? m_time : QDateTime::currentDateTime();
    const QString vehicle = m_serialNumber == 0 ? QStringLiteral("vehicle") : QString::number(m_serialNumber);
    return QStringLiteral("%1 %2.dxxml").arg(vehicle, time.toString(QStringLiteral("yyyy-MM-dd HH-mm")));
}

ShownVehicle::Note ShownVehicle::note() const
{
    switch (m_source) {
    case Source::None:
        return {};
    case Source::File:
        if (!m_time.isValid())
            return {Note::Kind::Information, tr("Values from a file, not of now.")};
        return {Note::Kind::Information,
                tr("Values from a file, not of now: it was saved on %1.").arg(shown(m_time))};
    case Source::Bus:
        return hasValues() && !m_isReading ? busNote() : Note();
    }
    return {};
}

void ShownVehicle::beginRead()
{
    m_source = Source::Bus;
    m_values = 0;
    m_nodes.clear();
    m_silentNodes.clear();
    m_serialNumber = 0;
    m_fileName.clear();
    m_time = QDateTime();
    m_isSaved = false;
    m_isReading = true;
    m_isComplete = false;
    m_wasInterrupted = false;
    emit changed();
}

void ShownVehicle::handleValue(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value)
{
    const bool wasUnsaved = isUnsaved();
    m_source = Source::Bus;
    m_isSaved = false;
    ++m_values;
    m_nodes.insert(nodeId);
    const bool isName = nodeId == controllerNode && index == identityObject && subIndex == serialNumberEntry;
    if (isName)
        m_serialNumber = value.toUInt();
    if (isName || !wasUnsaved)
        emit changed();
}

void ShownVehicle::endRead(bool isComplete, const QDateTime &time, int failed)
{
    m_failed = failed;
    m_isReading = false;
    m_isComplete = isComplete;
    m_time = time;
    if (!hasValues())
        m_source = Source::None;
    emit changed();
}

void ShownVehicle::showFile(const QString &fileName, const NodeStore &store, const QDateTime &date)
{
    m_source = Source::File;
    m_fileName = fileName;
    m_time = date;
    m_isSaved = true;
    m_isReading = false;
    m_nodes.clear();
    m_values = 0;
    for (const quint8 node : store.nodeList())
        m_values += store.objects(node).size();
    QVariant serialNumber;
    store.getValue(controllerNode, identityObject, serialNumberEntry, serialNumber);
    m_serialNumber = serialNumber.toUInt();
    emit changed();
}

void ShownVehicle::noteSaved(const QString &fileName)
{
    m_isSaved = true;
    m_fileName = fileName;
    emit changed();
}

void ShownVehicle::setConnected(bool isConnected)
{
    if (isConnected == m_isConnected)
        return;
    m_isConnected = isConnected;
    m_wasInterrupted = m_wasInterrupted || !isConnected;
    emit changed();
}

void ShownVehicle::setSilentNodes(const QSet<quint8> &nodes)
{
    const QSet<quint8> silent = QSet<quint8>(nodes).intersect(m_nodes);
    if (silent == m_silentNodes)
        return;
    m_silentNodes = silent;
    emit changed();
}

QString ShownVehicle::vehicleName() const
{
    return m_serialNumber == 0 ? tr("Vehicle without a serial number") : tr("Vehicle %1").arg(m_serialNumber);
}

QString ShownVehicle::busTitle() const
{
    if (m_isReading)
        return hasValues() ? tr("%1, is being read").arg(vehicleName()) : QString();
    const QString text = tr("%1, read on %2").arg(vehicleName(), shown(m_time));
    return m_isComplete && m_failed == 0 ? text : tr("%1, not complete").arg(text);
}

// What makes the values worth least comes first.
ShownVehicle::Note ShownVehicle::busNote() const
{
    const QString time = shown(m_time);
    if (!m_isConnected)
        return {Note::Kind::Warning, tr("Old values, read on %1: the bus is not connected now.").arg(time)};
    if (m_wasInterrupted) {
        return {Note::Kind::Warning,
                tr("Old values, read on %1: the bus was disconnected since. Read again (F5).").arg(time)};
    }
    if (!m_silentNodes.isEmpty()) {
        return {Note::Kind::Warning,
                tr("Old values, read on %1: no longer heard is node %2.").arg(time, numbers(m_silentNodes))};
    }
    if (!m_isComplete) {
        return {Note::Kind::Warning,
                tr("Not complete: the read of %1 ended early. What is missing was not read.").arg(time)};
    }
    if (m_failed > 0) {
        return {Note::Kind::Warning,
                tr("Not complete: %n value(s) could not be read on %1. The messages name them.", nullptr,
                   m_failed)
                    .arg(time)};
    }
    return {};
}
