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

int channelOf(quint32 key)
{
    constexpr int nodeBits = 8;
    return static_cast<int>(key >> nodeBits);
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

/*! Keeps what the trace has not said. Whether it is something else than before. */
bool PdoBook::Device::tell(quint32 object, quint32 value)
{
    const auto known = values.constFind(object);
    const bool isNews = known == values.constEnd() || (known->isTold && known->value != value);
    if (isNews)
        values.insert(object, {value, 0, true});
    return isNews;
}

void PdoBook::tell(quint8 nodeId, const CanOpen::ObjectLookup &lookup)
{
    tell(everyChannel, nodeId, &deviceOf(everyChannel, nodeId), lookup);
    for (auto &device : m_devices) {
        const int channel = channelOf(device.first);
        if (channel != everyChannel && device.first == deviceKey(channel, nodeId))
            tell(channel, nodeId, &device.second, lookup);
    }
}

void PdoBook::tell(int channel, quint8 nodeId, Device *device, const CanOpen::ObjectLookup &lookup)
{
    for (const quint16 first : {CanOpen::firstReceivePdo, CanOpen::firstTransmitPdo}) {
        for (int number = 0; number < CanOpen::mostPdos; ++number)
            tell({channel, nodeId, static_cast<quint16>(first + number)}, device, lookup);
    }
}

/*! Of a PDO that the trace has said nothing of, what is told for every channel is enough. */
void PdoBook::tell(const Pdo &pdo, Device *device, const CanOpen::ObjectLookup &lookup)
{
    bool isNews = false;
    const auto take = [&](ObjectKey key) {
        const std::optional<quint32> value = lookup(key);
        isNews = (value && device->tell(valueKey(key), *value)) || isNews;
        return value;
    };
    if (!take({pdo.parameter, cobIdSub}))
        return;
    const auto mapping = static_cast<quint16>(pdo.parameter + mappingOffset);
    const quint32 count = take({mapping, 0}).value_or(0);
    for (quint32 sub = 1; sub <= std::min<quint32>(count, CanOpen::mostMappedObjects); ++sub)
        take({mapping, static_cast<quint8>(sub)});
    const bool isPlaced = pdo.channel == everyChannel
                          || m_heardSince.contains(ownerOf(pdo.channel, pdo.nodeId, pdo.parameter));
    if (isNews && isPlaced)
        update(pdo, device, 0);
}

/*! A device that the trace says something of begins with what was told of its node. */
PdoBook::Device &PdoBook::deviceOf(int channel, quint8 nodeId)
{
    const auto known = m_devices.find(deviceKey(channel, nodeId));
    if (known != m_devices.end())
        return known->second;
    Device &device = m_devices[deviceKey(channel, nodeId)];
    const auto told = m_devices.find(deviceKey(everyChannel, nodeId));
    if (told != m_devices.end())
        device.values = told->second.values;
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

/*! Keeps a value. Since when it holds; empty when the trace has said no other before. */
std::optional<std::size_t> PdoBook::note(Device *device, const SdoTransfer &transfer, quint32 value)
{
    const auto known = device->values.constFind(valueKey(transfer.object));
    const bool isKnown = known != device->values.constEnd();
    const bool isHeard = isKnown && !known->isTold;
    const bool isSame = isKnown && known->value == value;
    if (isHeard && isSame)
        return std::nullopt;
    const std::size_t since = transfer.isUpload && !isHeard ? 0 : transfer.lastFrame;
    const quint32 owner = ownerOf(transfer.channel, transfer.nodeId, parameterOf(transfer.object.index));
    const auto heard = m_heardSince.constFind(owner);
    if (heard == m_heardSince.constEnd() || (*heard > since && !isSame))
        m_heardSince.insert(owner, since);
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

/*! Whether a device of the channel has said itself what its PDO carries, or that it is another one. */
bool PdoBook::isHeard(int channel, const PdoLayout &layout, std::size_t position) const
{
    const quint16 first = layout.isTransmit ? CanOpen::firstTransmitPdo : CanOpen::firstReceivePdo;
    const auto parameter = static_cast<quint16>(first + layout.number - 1);
    const auto since = m_heardSince.constFind(ownerOf(channel, layout.nodeId, parameter));
    return since != m_heardSince.constEnd() && *since <= position;
}

const PdoLayout *PdoBook::layoutAt(const Index &index, const TraceFrame &frame, std::size_t position) const
{
    const PdoLayout *heard
        = versionAt(index, identifierKey(frame.channel, frame.id, frame.isExtended()), position);
    if (heard != nullptr)
        return heard;
    const PdoLayout *told = versionAt(index, identifierKey(everyChannel, frame.id, frame.isExtended()), 0);
    const bool isOverruled = told != nullptr && isHeard(frame.channel, *told, position);
    return isOverruled ? nullptr : told;
}

const PdoLayout *PdoBook::find(const TraceFrame &frame, std::size_t position) const
{
    if (m_layouts.empty() || frame.isRemote() || frame.isError())
        return nullptr;
    const PdoLayout *sent = layoutAt(m_transmit, frame, position);
    return sent != nullptr ? sent : layoutAt(m_receive, frame, position);
}
