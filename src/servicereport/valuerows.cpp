// SPDX-License-Identifier: MIT
#include "valuerows.h"

#include "cellvoltages.h"
#include "reporttr.h"
#include "reportwords.h"

#include <interpreter/datainterpreter.h>
#include <interpreter/objectdescriptions.h>
#include <interpreter/objects.h>
#include <snapshot/snapshot.h>

#include <algorithm>
#include <iterator>

namespace {

/*! An object whose entries are rows, and the objects of the component that limit them. */
struct ValueObject
{
    quint16 index;
    const char *label;
    quint16 minimum; // 0: none
    quint16 maximum;
};

constexpr ValueObject valueObjects[] = {
    {0x6002, QT_TRANSLATE_NOOP("ServiceReport", "State"), 0, 0},
    {0x6164, QT_TRANSLATE_NOOP("ServiceReport", "State of charge"), 0, 0},
    {0x6176, QT_TRANSLATE_NOOP("ServiceReport", "State of health"), 0, 0},
    {0x6040, QT_TRANSLATE_NOOP("ServiceReport", "Voltage"), 0x6027, 0x6026},
    {0x603E, QT_TRANSLATE_NOOP("ServiceReport", "Current"), 0, 0},
    {0x6039, QT_TRANSLATE_NOOP("ServiceReport", "External voltage"), 0, 0},
    {0x603A, QT_TRANSLATE_NOOP("ServiceReport", "Peak input current"), 0, 0},
    {0x603B, QT_TRANSLATE_NOOP("ServiceReport", "Duration of the peak input current"), 0, 0},
    {0x603C, QT_TRANSLATE_NOOP("ServiceReport", "Peak output current"), 0, 0},
    {0x603D, QT_TRANSLATE_NOOP("ServiceReport", "Duration of the peak output current"), 0, 0},
    {0x603F, QT_TRANSLATE_NOOP("ServiceReport", "Current on side B"), 0, 0},
    {0x60B0, QT_TRANSLATE_NOOP("ServiceReport", "AC voltage"), 0, 0},
    {0x60B1, QT_TRANSLATE_NOOP("ServiceReport", "AC current"), 0, 0},
    {0x6050, QT_TRANSLATE_NOOP("ServiceReport", "Frequency"), 0, 0},
    {0x6051, QT_TRANSLATE_NOOP("ServiceReport", "Insulation resistance"), 0, 0},
    {0x6070, QT_TRANSLATE_NOOP("ServiceReport", "Auxiliary current"), 0, 0},
    {0x6071, QT_TRANSLATE_NOOP("ServiceReport", "Auxiliary voltage"), 0, 0},
    {0x6042, QT_TRANSLATE_NOOP("ServiceReport", "Temperature of the electronics"), 0, 0},
    {0x6105, QT_TRANSLATE_NOOP("ServiceReport", "Temperature of the battery"), 0x6123, 0x6122},
    {0x6010, QT_TRANSLATE_NOOP("ServiceReport", "Temperature around"), 0, 0},
    {0x6160, QT_TRANSLATE_NOOP("ServiceReport", "Energy left"), 0, 0},
    {0x6162, QT_TRANSLATE_NOOP("ServiceReport", "Energy when full"), 0, 0},
    {0x6102, QT_TRANSLATE_NOOP("ServiceReport", "Energy when new"), 0, 0},
    {0x6104, QT_TRANSLATE_NOOP("ServiceReport", "Number of cells"), 0, 0},
    {0x6107, QT_TRANSLATE_NOOP("ServiceReport", "Cycles of its lifetime"), 0, 0},
    {0x617D, QT_TRANSLATE_NOOP("ServiceReport", "Discharges so far"), 0, 0},
    {0x617E, QT_TRANSLATE_NOOP("ServiceReport", "Charges so far"), 0, 0},
    {0x6177, QT_TRANSLATE_NOOP("ServiceReport", "Time of discharging so far"), 0, 0},
    {0x6178, QT_TRANSLATE_NOOP("ServiceReport", "Time of charging so far"), 0, 0},
    {0x6179, QT_TRANSLATE_NOOP("ServiceReport", "Charge given so far"), 0, 0},
    {0x617A, QT_TRANSLATE_NOOP("ServiceReport", "Charge taken so far"), 0, 0},
    {0x617B, QT_TRANSLATE_NOOP("ServiceReport", "Energy given so far"), 0, 0},
    {0x617C, QT_TRANSLATE_NOOP("ServiceReport", "Energy taken so far"), 0, 0},
    {0x617F, QT_TRANSLATE_NOOP("ServiceReport", "Deep discharges"), 0, 0},
    {0x6180, QT_TRANSLATE_NOOP("ServiceReport", "Short circuits"), 0, 0},
    {0x6181, QT_TRANSLATE_NOOP("ServiceReport", "Over-temperatures"), 0, 0},
    {0x6008, QT_TRANSLATE_NOOP("ServiceReport", "Rated voltage"), 0, 0},
    {0x6024, QT_TRANSLATE_NOOP("ServiceReport", "Greatest continuous input current"), 0, 0},
    {0x6025, QT_TRANSLATE_NOOP("ServiceReport", "Greatest continuous output current"), 0, 0},
    {0x6043, QT_TRANSLATE_NOOP("ServiceReport", "Time switched on"), 0, 0},
    {0x6044, QT_TRANSLATE_NOOP("ServiceReport", "Time in standby"), 0, 0},
    {0x6045, QT_TRANSLATE_NOOP("ServiceReport", "Times switched on"), 0, 0},
    {0x6601, QT_TRANSLATE_NOOP("ServiceReport", "Operating time"), 0, 0},
    {0x6602, QT_TRANSLATE_NOOP("ServiceReport", "Operating time since the last start"), 0, 0},
    {0x651C, QT_TRANSLATE_NOOP("ServiceReport", "Accelerator position"), 0, 0},
    {0x651D, QT_TRANSLATE_NOOP("ServiceReport", "Electric brake position"), 0, 0},
};

constexpr quint16 firstProfileObject = 0x6000;

/*! What has a unit and is no value: limits and settings. They stand in the snapshot. */
struct ObjectRange
{
    quint16 first;
    quint16 last;
};

constexpr ObjectRange settings[] = {
    {0x6020, 0x6027}, // limits of voltage and current
    {0x6046, 0x604F}, // set limits
    {0x6060, 0x6067}, // timing, limits of the auxiliary supply
    {0x60A1, 0x60A4}, // limits of AC
    {0x60B7, 0x60FC}, // limits and set points of converters, what a charger knows of the battery
    {0x6103, 0x6103}, // capacity in Ah; that in Wh is shown
    {0x6108, 0x6108}, // lifetime input capacity
    {0x6120, 0x6127}, // limits of temperatures and cells
    {0x6161, 0x6161}, // capacity in Ah
    {0x6163, 0x6163}, // capacity in Ah, when full
    {0x6188, 0x618E}, // settings of sleep and balancing
    {0x6623, 0x6624}, // when a generator starts and stops
    {0x6724, 0x6725}, // when a load is switched on and off
};

bool isListed(quint16 index)
{
    return std::any_of(std::begin(valueObjects), std::end(valueObjects),
                       [index](const ValueObject &object) {
                           return object.index == index || object.minimum == index || object.maximum == index;
                       })
           || CellVoltages::isCellObject(index);
}

/*! Whether an object that no row is for has a unit, and so says something by itself. */
bool isMeasured(quint16 index)
{
    for (const ObjectRange &range : settings) {
        if (index >= range.first && index <= range.last)
            return false;
    }
    const ObjectDescription *description = objectDescriptions().find(index);
    return description != nullptr && description->unit != nullptr;
}

bool isNumber(const QVariant &value)
{
    return value.isValid() && value.type() != QVariant::String && value.type() != QVariant::ByteArray;
}

class ValueRows
{
public:
    ValueRows(const SnapshotNode &node, const QVector<Finding> &findings, const ReportWords &words)
        : m_node(node)
        , m_findings(findings)
        , m_words(words)
    {
    }

    QVector<ReportTable::Row> rows()
    {
        for (const ValueObject &object : valueObjects)
            addObject(object.index, ReportTr::tr(object.label), &object);
        addOthers();
        return m_rows;
    }

private:
    void addOthers()
    {
        quint16 last = 0;
        for (const SnapshotEntry &entry : m_node.entries) {
            const quint16 index = entry.key.index;
            if (index < firstProfileObject || index == last || isListed(index) || !isMeasured(index))
                continue;
            last = index;
            addObject(index, DataInterpreter::objectName(index, 1).simplified(), nullptr);
        }
    }

    /*! The entries that are values: sub-index 0 of an object that has others is their number. */
    QVector<const SnapshotEntry *> entriesOf(quint16 index) const
    {
        QVector<const SnapshotEntry *> entries;
        for (const SnapshotEntry &entry : m_node.entries) {
            if (entry.key.index == index && entry.gap != SnapshotGap::Absent)
                entries.append(&entry);
        }
        if (entries.size() > 1 && entries.first()->key.subIndex == 0)
            entries.removeFirst();
        return entries;
    }

    void addObject(quint16 index, const QString &label, const ValueObject *object)
    {
        const QVector<const SnapshotEntry *> entries = entriesOf(index);
        for (const SnapshotEntry *entry : entries) {
            const QString name = entries.size() > 1
                                     ? ReportTr::tr("%1 %2").arg(label, QString::number(entry->key.subIndex))
                                     : label;
            addEntry(name, *entry, object);
        }
    }

    void addEntry(const QString &name, const SnapshotEntry &entry, const ValueObject *object)
    {
        ReportTable::Row row;
        if (!entry.hasValue()) {
            row.cells = QStringList{name, ReportTr::tr("not read"), QString()};
            row.mark = ReportMark::NotChecked;
        } else {
            const Limits limits = object != nullptr ? limitsOf(*object, entry.key.subIndex) : Limits();
            row.cells = QStringList{name, textOf(entry), limitText(entry.key.index, limits)};
            row.mark = foundMark(entry.key);
        }
        m_rows.append(row);
    }

    QString textOf(const SnapshotEntry &entry) const
    {
        if (entry.key.index != Object::deviceStatus)
            return m_words.value(entry.key, entry.value);
        QString flags;
        QString state;
        DataInterpreter::interpretDeviceStatus(entry.value, flags, state);
        return state.simplified();
    }

    struct Limits
    {
        QVariant minimum;
        QVariant maximum;
    };

    /*! The limit of an entry; an object that has one limit has it for all of them. */
    QVariant limit(quint16 index, quint8 subIndex) const
    {
        if (index == 0)
            return QVariant();
        const QVector<const SnapshotEntry *> entries = entriesOf(index);
        const QVariant value = entries.size() == 1 ? entries.first()->value : m_node.value(index, subIndex);
        return isNumber(value) ? value : QVariant();
    }

    Limits limitsOf(const ValueObject &object, quint8 subIndex) const
    {
        return {limit(object.minimum, subIndex), limit(object.maximum, subIndex)};
    }

    QString limitText(quint16 index, const Limits &limits) const
    {
        const QString minimum = m_words.value({index, 1}, limits.minimum);
        const QString maximum = m_words.value({index, 1}, limits.maximum);
        if (limits.minimum.isValid() && limits.maximum.isValid())
            return ReportTr::tr("%1 to %2").arg(minimum, maximum);
        if (limits.maximum.isValid())
            return ReportTr::tr("at most %1").arg(maximum);
        return limits.minimum.isValid() ? ReportTr::tr("at least %1").arg(minimum) : QString();
    }

    ReportMark foundMark(CanOpen::ObjectKey key) const
    {
        ReportMark mark = ReportMark::None;
        for (const Finding &finding : m_findings) {
            if (finding.objects.contains(key))
                mark = qMax(mark, ReportMarks::of(finding.severity));
        }
        return mark;
    }

    const SnapshotNode &m_node;
    const QVector<Finding> &m_findings;
    const ReportWords &m_words;
    QVector<ReportTable::Row> m_rows;
};

} // namespace

ReportTable valueTable(const SnapshotNode &node, const QVector<Finding> &findings, const ReportWords &words)
{
    ReportTable table;
    table.columns = {{ReportTr::tr("Value"), 5}, {ReportTr::tr("Now"), 3}, {ReportTr::tr("Limits"), 4}};
    table.markColumn = 1;
    table.rows = ValueRows(node, findings, words).rows();
    return table;
}
