// SPDX-License-Identifier: MIT
#include "objectdescriptions.h"

#include "tablerow.h"
#include "units.h"

#include <QFile>

#include <algorithm>

namespace {

// Deliberate: the table keeps its slips. 6041h is a voltage in "mA", indices of three digits (638 for 638Eh)
// match no object of a bus, and ten indices occur more than once.
enum Field { NameField = 1, AlternativeNameField = 2, UnitField = 3, MinimumField = 4, MaximumField = 5 };

// Fields of a line that describes a sub-index of the object above it.
enum SubIndexField { SubIndexNumberField = 1, SubIndexNameField = 2 };

QString displayName(const QStringList &fields)
{
    const QString alternativeName = tableField(fields, AlternativeNameField);
    return alternativeName.isEmpty() ? tableField(fields, NameField) : alternativeName;
}

/*! Returns a limit; an empty field is none, and a field that is no number is 0. */
std::optional<quint32> limit(const QString &field)
{
    return field.isEmpty() ? std::nullopt : std::optional<quint32>(field.toUInt());
}

void readSubIndex(const QStringList &fields, ObjectDescription &description)
{
    if (tableField(fields, SubIndexNameField).simplified().isEmpty())
        return;
    description.subIndex = tableField(fields, SubIndexNumberField).toInt(nullptr, 16);
    description.subName = tableField(fields, SubIndexNameField);
}

void readRow(const QStringList &fields, ObjectDescription &description)
{
    // Deliberate: with several rows of one index the last one's unit counts, while the name is the first
    // one's
    description.unit = findUnitFormat(tableField(fields, UnitField));

    const ObjectLimits limits{limit(tableField(fields, MinimumField)),
                              limit(tableField(fields, MaximumField))};
    if (limits.minimum || limits.maximum)
        description.limits.append(limits);
}

} // namespace

ObjectDescriptions ObjectDescriptions::read(QIODevice &device)
{
    ObjectDescriptions table;
    std::optional<quint16> newIndex; // of the line above, when that is its object's first row

    forEachTableRow(device, [&](const QStringList &fields) {
        // Deliberate: only the line directly below an object's first row can name a sub-index, whatever that
        // line's own index is; of the five lines of 62E8h only the first is found
        if (newIndex)
            readSubIndex(fields, table.m_descriptions[*newIndex]);

        const auto index = static_cast<quint16>(tableKey(fields));
        const bool isFirstRow = !table.m_descriptions.contains(index);
        newIndex = isFirstRow ? std::optional<quint16>(index) : std::nullopt;

        ObjectDescription &description = table.m_descriptions[index];
        if (isFirstRow)
            description.name = displayName(fields);
        readRow(fields, description);
    });
    return table;
}

const ObjectDescription *ObjectDescriptions::find(quint16 index) const
{
    const auto description = m_descriptions.constFind(index);
    return description != m_descriptions.constEnd() ? &*description : nullptr;
}

QVector<quint16> ObjectDescriptions::indices() const
{
    QVector<quint16> indices = m_descriptions.keys().toVector();
    std::sort(indices.begin(), indices.end());
    return indices;
}

const ObjectDescriptions &objectDescriptions()
{
    static const ObjectDescriptions table = [] {
        QFile file(QStringLiteral(":/files/od.csv"));
        return file.open(QIODevice::ReadOnly | QIODevice::Text) ? ObjectDescriptions::read(file)
                                                                : ObjectDescriptions();
    }();
    return table;
}
