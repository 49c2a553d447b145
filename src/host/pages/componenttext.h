// SPDX-License-Identifier: MIT
#pragma once

#include "checkuprecord.h"

#include <servicereport/servicereport.h>

#include <QCoreApplication>
#include <QString>
#include <QVector>

/*! What a page says of one component of a check-up, as a text with marks for the lights and pictures in it. */
class ComponentText
{
    Q_DECLARE_TR_FUNCTIONS(ComponentText)

public:
    /*! HTML for QTextBrowser; everything from devices and files is text in it. Images are named "light:2" (a ReportMark)
     *  and "picture:0" (a position in pictures()). Objects of a finding are in the tool tip of its sentence. Node 0 is the
     *  vehicle as a whole.
     */
    ComponentText(const CheckupRecord &record, quint8 nodeId);

    const QString &html() const { return m_html; }
    const QVector<ReportDrawing> &pictures() const { return m_pictures; }

private:
    void addHead(const CheckedComponent &component, const SnapshotNode &node);
    void addFindings(const QVector<Finding> &findings);
    void addNotChecked(const QStringList &reasons);
    void addCells(const SnapshotNode &node);
    void addChanges(const CheckupRecord &record, quint8 nodeId);
    void addValues(const SnapshotNode &node, const QVector<Finding> &findings);
    void addHeading(const QString &text);

    QString m_html;
    QVector<ReportDrawing> m_pictures;
};
