// SPDX-License-Identifier: MIT
#pragma once

#include "entrymodel.h"

#include <servicereport/reportdrawing.h>

#include <QVector>
#include <QWidget>

class CopyTable;
class QTabWidget;
class QTextBrowser;
struct CheckupRecord;

/*! All about one component: its findings, all its values, and what was not read. */
class ComponentDetails : public QWidget
{
    Q_OBJECT

public:
    explicit ComponentDetails(QWidget *parent = nullptr);

    /*! Node 0 is the vehicle as a whole. */
    void showComponent(const CheckupRecord &record, quint8 nodeId);
    /*! A component that is being read. */
    void showValues(const SnapshotNode &node, const QString &sentence);
    /*! Nothing but a sentence. */
    void showSentence(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;

private:
    void setText(const QString &html, const QVector<ReportDrawing> &pictures);
    void addImages(const QVector<ReportDrawing> &pictures);
    void setNode(const SnapshotNode &node);
    void retranslate();

    QTabWidget *m_tabs;
    QTextBrowser *m_text;
    CopyTable *m_values;
    CopyTable *m_gaps;
    EntryModel m_valueModel;
    EntryModel m_gapModel;
    bool m_isNothingRead = false;
};
