// SPDX-License-Identifier: MIT
#include "playbackaddress.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace {

using Knowledge = RecordedVehicle::Knowledge;
using Pace = TracePlayer::Pace;

bool takeSpeed(const QString &value, PlaybackAddress *address)
{
    address->pace = Pace::Recorded;
    if (value == QLatin1String("max"))
        address->pace = Pace::Unpaced;
    else if (value == QLatin1String("step"))
        address->pace = Pace::Stepped;
    if (address->pace != Pace::Recorded)
        return true;
    bool isNumber = false;
    address->speed = value.toDouble(&isNumber);
    return isNumber && address->speed >= TracePlayer::slowest && address->speed <= TracePlayer::fastest;
}

bool takeAnswers(const QString &value, PlaybackAddress *address)
{
    const bool isPast = value == QLatin1String("past");
    address->knowledge = isPast ? Knowledge::Past : Knowledge::Nearest;
    return isPast || value == QLatin1String("nearest");
}

bool takeChannel(const QString &value, PlaybackAddress *address)
{
    address->channel = value;
    return !value.isEmpty();
}

bool takeRepeat(const QString &value, PlaybackAddress *address)
{
    address->isRepeated = value == QLatin1String("yes");
    return address->isRepeated || value == QLatin1String("no");
}

struct Setting
{
    const char *name;
    bool (*take)(const QString &value, PlaybackAddress *address);
    const char *values;
};

constexpr Setting settings[] = {
    {"speed", takeSpeed,
     QT_TRANSLATE_NOOP("PlaybackAddress", "a number from 0.01 to 1000, \"max\" or \"step\"")},
    {"answers", takeAnswers, QT_TRANSLATE_NOOP("PlaybackAddress", "\"nearest\" or \"past\"")},
    {"channel", takeChannel, QT_TRANSLATE_NOOP("PlaybackAddress", "the name of a channel of the trace")},
    {"repeat", takeRepeat, QT_TRANSLATE_NOOP("PlaybackAddress", "\"yes\" or \"no\"")},
};

QString complaintAbout(const QString &text)
{
    QStringList names;
    for (const Setting &setting : settings)
        names.append(QLatin1String(setting.name));
    return PlaybackAddress::tr("Playing back has no setting \"%1\". There are: %2.")
        .arg(text, names.join(QStringLiteral(", ")));
}

/*! Takes one "name=value"; a complaint when it is none. */
QString takeSetting(const QString &text, PlaybackAddress *address)
{
    const QString name = text.section(QLatin1Char('='), 0, 0);
    const QString value = text.section(QLatin1Char('='), 1);
    const auto *const setting
        = std::find_if(std::begin(settings), std::end(settings),
                       [&name](const Setting &known) { return name == QLatin1String(known.name); });
    if (setting == std::end(settings))
        return complaintAbout(text);
    if (setting->take(value, address))
        return QString();
    return PlaybackAddress::tr("\"%1\" takes %2, not \"%3\".")
        .arg(name, PlaybackAddress::tr(setting->values), value);
}

} // namespace

std::optional<PlaybackAddress> PlaybackAddress::parse(const QString &interfaceName, QString *errorMessage)
{
    PlaybackAddress address;
    address.fileName = interfaceName;
    const int mark = interfaceName.lastIndexOf(QLatin1Char('?'));
    if (mark < 0 || QFileInfo::exists(interfaceName))
        return address;
    address.fileName = interfaceName.left(mark);
    const QStringList texts = interfaceName.mid(mark + 1).split(QLatin1Char('&'));
    for (const QString &text : texts) {
        const QString complaint = text.isEmpty() ? QString() : takeSetting(text, &address);
        if (complaint.isEmpty())
            continue;
        *errorMessage = complaint;
        return std::nullopt;
    }
    return address;
}
