// SPDX-License-Identifier: MIT
#include "visitmodel.h"

#include "checkupwords.h"
#include "lighticon.h"
#include "plaintooltip.h"

#include <QLocale>

void VisitModel::setVisits(const QVector<VisitInfo> &visits)
{
    beginResetModel();
    m_visits = visits;
    endResetModel();
}

QString VisitModel::verdictText(const VisitInfo &visit)
{
    if (!visit.verdict)
        return tr("Not judged");
    const VisitVerdict &verdict = *visit.verdict;
    const QString counts
        = CheckupWords::counts(verdict.faults, verdict.warnings, verdict.notes, verdict.notChecked);
    return counts.isEmpty() ? ReportMarks::word(ReportMarks::of(verdict.verdict)) : counts;
}

QString VisitModel::kindText(const VisitInfo &visit)
{
    switch (visit.scope) {
    case SnapshotScope::Full:
        return visit.isComplete ? tr("Check-up") : tr("Check-up, with gaps");
    case SnapshotScope::Quick:
        return visit.isComplete ? tr("Quick check-up") : tr("Quick check-up, with gaps");
    case SnapshotScope::Imported:
        return tr("Read");
    case SnapshotScope::Recorded:
        return tr("From a trace");
    }
    return QString();
}

/*! Who was in it, and what people wrote. */
QString VisitModel::toolTip(const VisitInfo &visit)
{
    QStringList lines;
    for (const VisitComponent &component : visit.components) {
        const QString serial = component.identity.serial ? QString::number(*component.identity.serial)
                                                         : tr("no serial number");
        lines << tr("%1 (node %2): %3").arg(component.name(), QString::number(component.nodeId), serial);
    }
    for (const QString &text : {visit.notes.customer, visit.notes.technician, visit.notes.note}) {
        if (!text.isEmpty())
            lines << text;
    }
    constexpr int mostLines = 40;
    return plainToolTip(lines.mid(0, mostLines).join(QLatin1Char('\n')));
}

int VisitModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_visits.size();
}

int VisitModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant VisitModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_visits.size())
        return QVariant();
    const VisitInfo &visit = m_visits.at(index.row());
    if (role == Qt::DecorationRole && index.column() == VerdictColumn && visit.verdict)
        return LightIcon::of(ReportMarks::of(visit.verdict->verdict));
    if (role == Qt::ToolTipRole)
        return toolTip(visit);
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (index.column()) {
    case TimeColumn:
        return QLocale().toString(visit.time.toLocalTime(), QLocale::ShortFormat);
    case VerdictColumn:
        return verdictText(visit);
    case KindColumn:
        return kindText(visit);
    case ValuesColumn:
        return QLocale().toString(visit.valueCount);
    case NoteColumn:
        return visit.notes.note.simplified();
    default:
        return QVariant();
    }
}

QVariant VisitModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case TimeColumn:
        return tr("Visit");
    case VerdictColumn:
        return tr("Found");
    case KindColumn:
        return tr("What was done");
    case ValuesColumn:
        return tr("Values");
    case NoteColumn:
        return tr("Note");
    default:
        return QVariant();
    }
}
