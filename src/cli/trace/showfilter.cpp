// SPDX-License-Identifier: MIT
#include "showfilter.h"

#include <cli/core/commandarguments.h>
#include <cli/core/objectaddress.h>
#include <cli/core/optionnames.h>

namespace {

constexpr QLatin1String kindOption("kind");
constexpr QLatin1String objectOption("object");
constexpr QLatin1String textOption("text");
constexpr QLatin1String wrongOption("wrong");

std::optional<FrameKind> kindOf(const QString &name)
{
    for (int kind = 0; kind < frameKinds; ++kind) {
        if (name == QLatin1String(frameKindName(static_cast<FrameKind>(kind))))
            return static_cast<FrameKind>(kind);
    }
    return std::nullopt;
}

QString kindNames()
{
    QStringList names;
    for (int kind = 0; kind < frameKinds; ++kind)
        names += QLatin1String(frameKindName(static_cast<FrameKind>(kind)));
    return names.join(QLatin1String(", "));
}

/*! "6164", "6164h.2", "0x6164.0x02" */
std::optional<TraceFilter::Object> objectOf(const QString &text)
{
    const int point = text.indexOf(QLatin1Char('.'));
    const std::optional<quint16> index = ObjectAddress::parseIndex(text.left(point));
    if (!index)
        return std::nullopt;
    if (point < 0)
        return TraceFilter::Object{*index, -1};
    const std::optional<quint8> sub = ObjectAddress::parseSubIndex(text.mid(point + 1));
    return sub ? std::optional(TraceFilter::Object{*index, *sub}) : std::nullopt;
}

} // namespace

void ShowFilter::addOptions(CommandArguments &options)
{
    options.addOption({nodeOption, tr("Only what is from or for this node; may be given more than once."),
                       QStringLiteral("N")});
    options.addOption({kindOption, tr("Only these kinds, with commas between them: %1.").arg(kindNames()),
                       QStringLiteral("KIND")});
    options.addOption(
        {objectOption,
         tr("Only transfers of this object and PDOs that carry it, with its sub-index or all of "
            "them: 6164h.2; may be given more than once."),
         QStringLiteral("OBJECT")});
    options.addOption({textOption, tr("Only lines that hold this text."), QStringLiteral("TEXT")});
    options.addOption({wrongOption, tr("Only what is wrong: warnings and faults.")});
}

std::optional<ExitStatus> ShowFilter::parse(const CommandArguments &options)
{
    if (const std::optional<ExitStatus> status = parseNodes(options))
        return status;
    if (const std::optional<ExitStatus> status = parseKinds(options))
        return status;
    if (const std::optional<ExitStatus> status = parseObjects(options))
        return status;
    m_filter.text = options.value(textOption);
    m_filter.isWrongOnly = options.isSet(wrongOption);
    return std::nullopt;
}

std::optional<ExitStatus> ShowFilter::parseNodes(const CommandArguments &options)
{
    for (const QString &text : options.values(nodeOption)) {
        const std::optional<quint8> nodeId = ObjectAddress::parseNodeId(text);
        if (!nodeId)
            return options.complain(tr("\"%1\" is no node ID; they are 1 to 127.").arg(text));
        m_filter.nodes.set(*nodeId);
    }
    return std::nullopt;
}

std::optional<ExitStatus> ShowFilter::parseKinds(const CommandArguments &options)
{
    for (const QString &list : options.values(kindOption)) {
        for (const QString &name : list.split(QLatin1Char(','))) {
            const std::optional<FrameKind> kind = kindOf(name.trimmed());
            if (!kind)
                return options.complain(
                    tr("There is no kind \"%1\"; there are %2.").arg(name.trimmed(), kindNames()));
            m_filter.kinds.set(static_cast<std::size_t>(*kind));
        }
    }
    return std::nullopt;
}

std::optional<ExitStatus> ShowFilter::parseObjects(const CommandArguments &options)
{
    for (const QString &text : options.values(objectOption)) {
        const std::optional<TraceFilter::Object> object = objectOf(text);
        if (!object)
            return options.complain(
                tr("\"%1\" is no object; one is written like 6164h or 6164h.2.").arg(text));
        m_filter.objects.append(*object);
    }
    return std::nullopt;
}
