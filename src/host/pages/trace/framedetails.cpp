// SPDX-License-Identifier: MIT
#include "framedetails.h"

#include "tracetimes.h"

#include <trace/decoding/framewords.h>

#include <QFont>

#include <algorithm>

namespace {

QString bytesOf(const TraceFrame &frame, const FramePart &part)
{
    const auto *const begin = reinterpret_cast<const char *>(frame.bytes.data());
    const int first = std::min(std::max(part.first, 0), frame.size());
    const int count = std::min(std::max(part.count, 0), frame.size() - first);
    return QString::fromLatin1(QByteArray(begin + first, count).toHex(' ').toUpper());
}

bool isUnderWay(const TraceLines &lines, std::size_t line)
{
    return lines.at(line).transfer != 0 && !lines.transfer(line);
}

} // namespace

void FrameDetails::show(const TraceDocument &document, std::size_t line)
{
    m_frames = document.lines.frames(line).size();
    m_isUnderWay = isUnderWay(document.lines, line);
    const QVector<Row> rows = rowsOf(document, line);
    if (rows == m_rows) // the user's place in them stays
        return;
    beginResetModel();
    m_rows = rows;
    endResetModel();
}

QVector<FrameDetails::Row> FrameDetails::rowsOf(const TraceDocument &document, std::size_t line)
{
    QVector<Row> rows;
    const std::vector<std::size_t> frames = document.lines.frames(line);
    const std::vector<QVector<FramePart>> parts = document.lines.parts(line, mostFrames);
    for (std::size_t i = 0; i < parts.size(); ++i)
        rows += rowsOf(document.trace.head, document.trace.frames[frames[i]], parts[i]);
    if (frames.size() > parts.size())
        rows.append({QString(), QString(),
                     tr("and %n more frame(s)", nullptr, static_cast<int>(frames.size() - parts.size())),
                     true});
    return rows;
}

void FrameDetails::update(const TraceDocument &document, std::size_t line)
{
    if (!m_isUnderWay)
        return;
    m_isUnderWay = isUnderWay(document.lines, line);
    if (document.lines.frames(line).size() != m_frames)
        show(document, line);
}

QVector<FrameDetails::Row> FrameDetails::rowsOf(const TraceHead &head, const TraceFrame &frame,
                                                const QVector<FramePart> &parts)
{
    QVector<Row> rows;
    QString meaning = tr("Frame %1").arg(FrameWords::identifier(frame));
    if (head.channels.size() > 1)
        meaning += QStringLiteral(", ") + head.channels.value(frame.channel);
    if (frame.isSent())
        meaning += QStringLiteral(", ") + tr("sent by this computer");
    rows.append(
        {TraceTimes::longText(frame.time, head.hasTimeOfDay), FrameWords::bytes(frame), meaning, true});
    for (const FramePart &part : parts) {
        const QString where = part.count == 1
                                  ? tr("byte %1").arg(part.first)
                                  : tr("bytes %1 to %2").arg(part.first).arg(part.first + part.count - 1);
        rows.append({where, bytesOf(frame, part), part.text, false});
    }
    return rows;
}

void FrameDetails::clear()
{
    beginResetModel();
    m_rows.clear();
    m_isUnderWay = false;
    endResetModel();
}

int FrameDetails::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int FrameDetails::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant FrameDetails::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_rows.size())
        return QVariant();
    const Row &row = m_rows.at(index.row());
    if (role == Qt::FontRole && row.isFrame) {
        QFont font;
        font.setBold(true);
        return font;
    }
    if (role != Qt::DisplayRole)
        return QVariant();
    switch (index.column()) {
    case WhereColumn:
        return row.isFrame ? row.where : QStringLiteral("    ") + row.where;
    case BytesColumn:
        return row.bytes;
    default:
        return row.meaning;
    }
}

QVariant FrameDetails::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QVariant();
    switch (section) {
    case WhereColumn:
        return tr("Where");
    case BytesColumn:
        return tr("Bytes");
    default:
        return tr("Meaning");
    }
}
