// SPDX-License-Identifier: MIT
#include "bundlemasking.h"

#include <bundle/masking/masking.h>
#include <bundle/masking/snapshotmasking.h>
#include <bundle/masking/tracemasking.h>

#include <QJsonArray>

namespace {

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

} // namespace

SupportBundle BundleMasking::masked(SupportBundle bundle)
{
    Masking masking;
    TraceMasking traces;
    masking.learnComputer();
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
        event.detail = masking.text(event.detail);
    for (BundleMessage &message : bundle.messages)
        message.text = masking.text(message.text);
    bundle.system = ::masked(bundle.system, &masking);
    bundle.isMasked = true;
    return bundle;
}
