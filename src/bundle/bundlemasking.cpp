// SPDX-License-Identifier: MIT
#include "bundlemasking.h"

#include <bundle/masking/masking.h>
#include <bundle/masking/snapshotmasking.h>
#include <bundle/masking/tracemasking.h>

#include <QJsonArray>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr int emergencySize = 8; // bytes of its frame: code, error register, the manufacturer's
constexpr int registerAt = 2;
constexpr int manufacturerAt = 3;

QJsonValue masked(const QJsonValue &value, Masking *masking);

QJsonArray masked(const QJsonArray &array, Masking *masking)
{
    QJsonArray result;
    for (const QJsonValue &value : array)
        result.append(masked(value, masking));
    return result;
}

QJsonObject masked(const QJsonObject &object, Masking *masking)
{
    QJsonObject result;
    for (auto member = object.begin(); member != object.end(); ++member)
        result.insert(member.key(), masked(member.value(), masking));
    return result;
}

/*! All texts, however deep they stand. */
QJsonValue masked(const QJsonValue &value, Masking *masking)
{
    if (value.isString())
        return masking->text(value.toString());
    if (value.isArray())
        return masked(value.toArray(), masking);
    return value.isObject() ? QJsonValue(masked(value.toObject(), masking)) : value;
}

/*! An emergency has all bytes of its frame but those of the error code, and is to say what that says. */
void mask(LiveEvent *event, Masking *masking)
{
    event->detail = masking->text(event->detail);
    std::array<char, emergencySize> frame{};
    qToLittleEndian(static_cast<quint16>(event->code), frame.data());
    frame[registerAt] = static_cast<char>(event->errorRegister);
    std::copy(event->manufacturer.begin(), event->manufacturer.end(), frame.begin() + manufacturerAt);
    masking->sweep(frame.data(), emergencySize);
    event->errorRegister = static_cast<quint8>(frame[registerAt]);
    std::copy(frame.begin() + manufacturerAt, frame.end(), event->manufacturer.begin());
}

} // namespace

SupportBundle BundleMasking::masked(SupportBundle bundle)
{
    return masked(std::move(bundle), Mask());
}

SupportBundle BundleMasking::masked(SupportBundle bundle, const Mask &standIns)
{
    Masking masking(standIns);
    TraceMasking traces;
    masking.learnComputer();
    masking.learnBus(bundle.system.value(QLatin1String("bus")).toString());
    if (bundle.snapshot) {
        SnapshotMasking::learn(*bundle.snapshot, &masking);
        traces.tell(*bundle.snapshot);
    }
    if (bundle.trace) {
        traces.learn(*bundle.trace, &masking);
        traces.mask(&*bundle.trace, &masking);
        for (QString &channel : bundle.trace->head.channels)
            channel = masking.text(channel);
    }
    if (bundle.snapshot)
        bundle.snapshot = SnapshotMasking::masked(*bundle.snapshot, &masking);
    for (LiveEvent &event : bundle.events)
        mask(&event, &masking);
    for (BundleMessage &message : bundle.messages)
        message.text = masking.text(message.text);
    bundle.system = ::masked(bundle.system, &masking);
    bundle.isMasked = true;
    return bundle;
}
