// SPDX-License-Identifier: MIT
#include "pdobook.h"

#include <canopen/pdoparameter.h>
#include <trace/transfers/sdotransfer.h>

#include <algorithm>

using CanOpen::ObjectKey;

namespace {

constexpr int everyChannel = 0x100; // of what is told beside the trace
constexpr quint16 lastPdoObject = 0x1BFF;
constexpr quint16 mappingOffset = 0x200;
constexpr quint16 numberMask = 0x1FF;
constexpr quint8 cobIdSub = 1;
constexpr int mostEntryBytes = 4;

quint32 valueKey(ObjectKey key)
{
    return quint32(key.index) << 8 | key.subIndex;
}

quint32 deviceKey(int channel, quint8 nodeId)
{
    return quint32(channel) << 8 | nodeId;
}

quint32 ownerOf(int channel, quint8 nodeId, quint16 parameter)
{
    constexpr quint32 parameterMask = 0xFFF; // 400h to 9FFh
    constexpr int nodeShift = 12;
    constexpr int channelShift = 20;
    return quint32(channel) << channelShift | quint32(nodeId) << nodeShift | (parameter & parameterMask);
}

quint64 identifierKey(int channel, quint32 id, bool isExtended)
{
    return quint64(channel) << 32 | quint64(isExtended ? 1 : 0) << 31 | id;
}

bool isTransmit(quint16 parameter)
{
    return parameter >= CanOpen::firstTransmitPdo;
}

/*! The communication parameter of the PDO that an object belongs to, 1400h to 15FFh or 1800h to 19FFh. */
quint16 parameterOf(quint16 index)
{
    const quint16 first
        = index >= CanOpen::firstTransmitPdo ? CanOpen::firstTransmitPdo : CanOpen::firstReceivePdo;
    return static_cast<quint16>(first + (index & numberMask));
}

std::optional<quint32> numberIn(const QByteArray &data)
{
    if (data.isEmpty() || data.size() > mostEntryBytes)
        return std::nullopt;
    quint32 number = 0;
    for (int i = data.size() - 1; i >= 0; --i)
        number = number << 8 | static_cast<quint8>(data.at(i));
    return number;
}

} // namespace

void PdoBook::tell(quint8 nodeId, const CanOpen::ObjectLookup &lookup)
{
    Device &device = deviceOf(everyChannel, nodeId);
    const auto take = [&](ObjectKey key) {
        const std::optional<quint32> value = lookup(key);
        if (value)
            device.values.insert(valueKey(key), {*value, 0, true});
        return value;
    };
    for (const quint16 first : {CanOpen::firstReceivePdo, CanOpen::firstTransmitPdo}) {
        for (int number = 0; number < CanOpen::mostPdos; ++number) {
            const auto parameter = static_cast<quint16>(first + number);
            if (!take({parameter, cobIdSub}))
                continue;
            const auto mapping = static_cast<quint16>(parameter + mappingOffset);
            const quint32 count = take({mapping, 0}).value_or(0);
            for (quint32 sub = 1; sub <= std::min<quint32>(count, CanOpen::mostMappedObjects); ++sub)
                take({mapping, static_cast<quint8>(sub)});
            update({everyChannel, nodeId, parameter}, &device, 0);
        }
    }
}

/*! A device that the trace says something of begins with what was told of its node. */
PdoBook::Device &PdoBook::deviceOf(int channel, quint8 nodeId)
{
    const auto known = m_devices.find(deviceKey(channel, nodeId));
    if (known != m_devices.end())
        return known->second;
    Device &device = m_devices[deviceKey(channel, nodeId)];
    const auto told = m_devices.find(deviceKey(everyChannel, nodeId));
    if (channel == everyChannel || told == m_devices.end())
        return device;
    device.values = told->second.values;
    const QList<quint16> parameters = told->second.placed.keys();
    for (const quint16 parameter : parameters)
        update({channel, nodeId, parameter}, &device, 0);
    return device;
}

void PdoBook::learn(const SdoTransfer &transfer)
{
    const quint16 index = transfer.object.index;
    if (!transfer.hasValue() || index < CanOpen::firstReceivePdo || index > lastPdoObject)
        return;
    const std::optional<quint32> value = numberIn(transfer.data);
    if (!value)
        return;
    Device &device = deviceOf(transfer.channel, transfer.nodeId);
    if (const std::optional<std::size_t> since = note(&device, transfer, *value))
        update({transfer.channel, transfer.nodeId, parameterOf(index)}, &device, *since);
}

/*! Keeps a value. Since when it holds; empty when it is no other than before. */
std::optional<std::size_t> PdoBook::note(Device *device, const SdoTransfer &transfer, quint32 value)
{
    const auto known = device->values.find(valueKey(transfer.object));
    const bool isKnown = known != device->values.end();
    if (isKnown && known->value == value)
        return std::nullopt;
    const bool heldBefore = transfer.isUpload && (!isKnown || known->isTold);
    const std::size_t since = heldBefore ? 0 : transfer.lastFrame;
    device->values.insert(valueKey(transfer.object), {value, since, false});
    return since;
}

/*! Puts a PDO into its place by what is known now; \a changed: since when that holds. */
void PdoBook::update(const Pdo &pdo, Device *device, std::size_t changed)
{
    ++m_revision;
    std::size_t since = changed;
    const CanOpen::ObjectLookup lookup = [device, &since](ObjectKey key) -> std::optional<quint32> {
        const auto known = device->values.constFind(valueKey(key));
        if (known == device->values.constEnd())
            return std::nullopt;
        since = std::max(since, known->since);
        return known->value;
    };
    const std::optional<CanOpen::PdoParameter> parameter = CanOpen::readPdoParameter(lookup, pdo.parameter);
    const CanOpen::PdoMapping mapping
        = CanOpen::readPdoMapping(lookup, static_cast<quint16>(pdo.parameter + mappingOffset));
    const bool isUsable = parameter && parameter->isValid && !mapping.entries.isEmpty()
                          && mapping.problem == CanOpen::PdoMapping::Problem::None;
    if (!isUsable) {
        withdraw(pdo, device, changed);
        return;
    }
    const int number = (pdo.parameter & numberMask) + 1;
    place(pdo, device, identifierKey(pdo.channel, parameter->cobId, parameter->isExtended), since,
          PdoLayout::of(pdo.nodeId, number, isTransmit(pdo.parameter), mapping));
}

PdoBook::Index &PdoBook::indexOf(const Pdo &pdo)
{
    return isTransmit(pdo.parameter) ? m_transmit : m_receive;
}

/*! Of two that say they send the same the first is believed. */
void PdoBook::place(const Pdo &pdo, Device *device, quint64 identifier, std::size_t since,
                    const PdoLayout &layout)
{
    const auto placed = device->placed.constFind(pdo.parameter);
    if (placed != device->placed.constEnd() && *placed != identifier)
        withdraw(pdo, device, since);
    std::vector<Version> &versions = indexOf(pdo)[identifier];
    const quint32 owner = ownerOf(pdo.channel, pdo.nodeId, pdo.parameter);
    const bool isTaken = !versions.empty() && versions.back().layout >= 0 && versions.back().owner != owner;
    if (isTaken)
        return;
    if (m_layouts.size() >= mostLayouts || versions.size() >= mostVersions) {
        withdraw(pdo, device, since);
        return;
    }
    versions.push_back({since, static_cast<qint32>(m_layouts.size()), owner});
    m_layouts.push_back(layout);
    device->placed.insert(pdo.parameter, identifier);
}

void PdoBook::withdraw(const Pdo &pdo, Device *device, std::size_t since)
{
    const auto placed = device->placed.find(pdo.parameter);
    if (placed == device->placed.end())
        return;
    std::vector<Version> &versions = indexOf(pdo)[*placed];
    versions.push_back({since, -1, ownerOf(pdo.channel, pdo.nodeId, pdo.parameter)});
    device->placed.erase(placed);
}

const PdoLayout *PdoBook::versionAt(const Index &index, quint64 identifier, std::size_t position) const
{
    const auto versions = index.constFind(identifier);
    if (versions == index.constEnd())
        return nullptr;
    const auto version = std::find_if(versions->rbegin(), versions->rend(),
                                      [position](const Version &known) { return known.since <= position; });
    const bool isKnown = version != versions->rend() && version->layout >= 0;
    return isKnown ? &m_layouts[static_cast<std::size_t>(version->layout)] : nullptr;
}

const PdoLayout *PdoBook::layoutAt(const Index &index, const TraceFrame &frame, std::size_t position) const
{
    const PdoLayout *heard
        = versionAt(index, identifierKey(frame.channel, frame.id, frame.isExtended()), position);
    if (heard != nullptr)
        return heard;
    const PdoLayout *told = versionAt(index, identifierKey(everyChannel, frame.id, frame.isExtended()), 0);
    // What a device of this channel says itself has been looked at already.
    const bool isOverruled = told != nullptr && m_devices.count(deviceKey(frame.channel, told->nodeId)) > 0;
    return isOverruled ? nullptr : told;
}

const PdoLayout *PdoBook::find(const TraceFrame &frame, std::size_t position) const
{
    if (m_layouts.empty() || frame.isRemote() || frame.isError())
        return nullptr;
    const PdoLayout *sent = layoutAt(m_transmit, frame, position);
    return sent != nullptr ? sent : layoutAt(m_receive, frame, position);
}
