// SPDX-License-Identifier: MIT
#include "componenttext.h"

#include "checkupwords.h"
#include "detailsbrowser.h"

#include <canopen/plaintext.h>
#include <checkup/objectwords.h>
#include <interpreter/vendortable.h>
#include <servicereport/cellvoltages.h>
#include <servicereport/charts.h>
#include <servicereport/reportmark.h>
#include <servicereport/reportwords.h>
#include <servicereport/valuerows.h>
#include <snapshot/deviceidentity.h>

#include <QLocale>

namespace {

constexpr int mostFindings = 200; // shown; a device may have thousands of errors in its list
constexpr int mostChanges = 200;

QString escaped(const QString &text)
{
    QStringList lines;
    const QStringList all = text.split(QLatin1Char('\n'));
    for (const QString &line : all)
        lines << DetailsBrowser::unbroken(CanOpen::plainText(line)).toHtmlEscaped();
    return lines.join(QLatin1String("<br>"));
}

QString lightImage(ReportMark mark, int size)
{
    return QStringLiteral("<img src=\"light:%1\" width=\"%2\" height=\"%2\">").arg(int(mark)).arg(size);
}

/*! The objects that a finding is about, with their names, for its tool tip. */
QString objectsOf(const Finding &finding)
{
    QStringList names;
    for (const CanOpen::ObjectKey key : finding.objects)
        names << ObjectWords::nameAndNumber(key);
    return names.join(QStringLiteral("\n"));
}

QString tableRow(const ReportTable::Row &row, int markColumn)
{
    QString html = QStringLiteral("<tr>");
    for (int column = 0; column < row.cells.size(); ++column) {
        const bool isMarked = column == markColumn && row.mark != ReportMark::None;
        html += QStringLiteral("<td>%1%2</td>")
                    .arg(isMarked ? lightImage(row.mark, 13) + QStringLiteral("&nbsp;") : QString(),
                         escaped(row.cells.at(column)));
    }
    return html + QStringLiteral("</tr>");
}

} // namespace

ComponentText::ComponentText(const CheckupRecord &record, quint8 nodeId)
{
    if (nodeId == 0) {
        addFindings(record.result.vehicleFindings);
        addChanges(record, 0);
        return;
    }
    const CheckedComponent *component = record.component(nodeId);
    const SnapshotNode *node = record.snapshot.find(nodeId);
    if (component == nullptr || node == nullptr)
        return;
    addHead(*component, *node);
    addFindings(component->findings);
    addNotChecked(component->notChecked);
    addChanges(record, nodeId);
    addCells(*node);
    addValues(*node, component->findings);
}

void ComponentText::addHeading(const QString &text)
{
    m_html += QStringLiteral("<h4>%1</h4>").arg(escaped(text));
}

void ComponentText::addHead(const CheckedComponent &component, const SnapshotNode &node)
{
    const DeviceIdentity identity = DeviceIdentity::of(node);
    QStringList facts;
    if (identity.vendor) {
        const QString company = vendorTable().company(*identity.vendor).simplified();
        if (!company.isEmpty())
            facts << company;
    }
    if (!identity.deviceName.isEmpty())
        facts << identity.deviceName;
    if (identity.serial)
        facts << tr("serial number %1").arg(*identity.serial);
    if (!identity.softwareVersion.isEmpty())
        facts << tr("software %1").arg(identity.softwareVersion);
    else if (identity.revision)
        facts << tr("revision %1.%2").arg(*identity.revision >> 16).arg(*identity.revision & 0xFFFF);
    m_html += QStringLiteral("<h3>%1</h3>")
                  .arg(escaped(tr("%1, node %2").arg(component.name, QString::number(component.nodeId))));
    if (!facts.isEmpty())
        m_html += QStringLiteral("<p class=\"aside\">%1</p>").arg(escaped(facts.join(QStringLiteral(" · "))));
    if (component.state == ComponentState::Good)
        m_html += QStringLiteral("<p>%1 %2</p>")
                      .arg(lightImage(ReportMark::Good, 16),
                           escaped(tr("In order: all rules that concern it were checked.")));
}

void ComponentText::addFindings(const QVector<Finding> &findings)
{
    if (findings.isEmpty())
        return;
    m_html += QStringLiteral("<table cellspacing=\"0\" cellpadding=\"3\">");
    int shown = 0;
    for (const Finding &finding : findings) {
        if (shown++ == mostFindings)
            break;
        const ReportMark mark = ReportMarks::of(finding.severity);
        m_html += QStringLiteral("<tr><td>%1</td><td><a name=\"f\" title=\"%2\"><b>%3:</b> %4</a>")
                      .arg(lightImage(mark, 18), objectsOf(finding).toHtmlEscaped(),
                           escaped(ReportMarks::word(mark)), escaped(finding.text));
        if (!finding.advice.isEmpty())
            m_html += QStringLiteral("<br><span class=\"advice\">%1</span>").arg(escaped(finding.advice));
        m_html += QStringLiteral("</td></tr>");
    }
    m_html += QStringLiteral("</table>");
    if (findings.size() > mostFindings)
        m_html += QStringLiteral("<p>%1</p>")
                      .arg(escaped(tr("... and %1 more").arg(findings.size() - mostFindings)));
}

void ComponentText::addNotChecked(const QStringList &reasons)
{
    if (reasons.isEmpty())
        return;
    m_html += QStringLiteral("<table cellspacing=\"0\" cellpadding=\"3\">");
    for (const QString &reason : reasons)
        m_html += QStringLiteral("<tr><td>%1</td><td><b>%2:</b> %3</td></tr>")
                      .arg(lightImage(ReportMark::NotChecked, 18),
                           escaped(ReportMarks::word(ReportMark::NotChecked)), escaped(reason));
    m_html += QStringLiteral("</table>");
}

void ComponentText::addCells(const SnapshotNode &node)
{
    const QVector<CellVoltages> packs = CellVoltages::of(node);
    const ReportWords words{QLocale()};
    for (const CellVoltages &pack : packs) {
        addHeading(packs.size() > 1 ? tr("Cell voltages, pack %1").arg(pack.pack) : tr("Cell voltages"));
        const ReportPicture picture = ReportCharts::cellVoltages(pack, QString(), words);
        m_html += QStringLiteral("<p><img src=\"picture:%1\" width=\"%2\" height=\"%3\"><br>%4</p>")
                      .arg(m_pictures.size())
                      .arg(qRound(picture.drawing.size.width()))
                      .arg(qRound(picture.drawing.size.height()))
                      .arg(escaped(picture.words));
        m_pictures.append(picture.drawing);
    }
}

void ComponentText::addChanges(const CheckupRecord &record, quint8 nodeId)
{
    if (!record.comparison)
        return;
    const QVector<Change> changes = record.changesOf(nodeId);
    if (changes.isEmpty() && nodeId == 0)
        return;
    const QDateTime time = record.comparison->earlier.time;
    addHeading(tr("Since the visit of %1").arg(QLocale().toString(time.date(), QLocale::ShortFormat)));
    if (changes.isEmpty()) {
        m_html += QStringLiteral("<p>%1</p>").arg(escaped(tr("Nothing has changed.")));
        return;
    }
    m_html += QStringLiteral("<ul>");
    int shown = 0;
    for (const Change &change : changes) {
        if (shown++ == mostChanges)
            break;
        m_html += QStringLiteral("<li><a name=\"c\" title=\"%1\">%2</a></li>")
                      .arg(change.key ? ObjectWords::nameAndNumber(*change.key).toHtmlEscaped() : QString(),
                           escaped(change.text));
    }
    m_html += QStringLiteral("</ul>");
    if (changes.size() > mostChanges)
        m_html += QStringLiteral("<p>%1</p>")
                      .arg(escaped(tr("... and %1 more").arg(changes.size() - mostChanges)));
}

/*! What a workshop asks for, with the limits that the device has itself. */
void ComponentText::addValues(const SnapshotNode &node, const QVector<Finding> &findings)
{
    const ReportTable table = valueTable(node, findings, ReportWords{QLocale()});
    if (table.rows.isEmpty())
        return;
    addHeading(tr("Values"));
    m_html += QStringLiteral("<table cellspacing=\"0\" cellpadding=\"3\" width=\"100%\"><tr>");
    for (const ReportTable::Column &column : table.columns)
        m_html += QStringLiteral("<td class=\"head\">%1</td>").arg(escaped(column.title));
    m_html += QStringLiteral("</tr>");
    for (const ReportTable::Row &row : table.rows)
        m_html += tableRow(row, table.markColumn);
    m_html += QStringLiteral("</table>");
}
