// SPDX-License-Identifier: MIT
#pragma once

#include <tests/support/filedialogdriver.h>
#include <ui/overviewform.h>

#include <QFile>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <QVector>

/*! One value of an exchange file. */
struct FileValue
{
    quint8 nodeId;
    quint16 index;
    quint8 subIndex;
    qint64 value;
};

/*! The plug-in's window after the import of a file, as a user does it. */
class ImportedForm
{
public:
    /*! Values of one node stand together. */
    explicit ImportedForm(const QVector<FileValue> &values)
    {
        import(documentOf(values));
        m_form.show();
    }

    OverviewForm &form() { return m_form; }
    QTreeWidget &tree() const { return child<QTreeWidget>("treeWidget"); }
    QTableWidget &parameters() const { return child<QTableWidget>("tblParameters"); }
    QTableWidget &values() const { return child<QTableWidget>("tblValues"); }

private:
    static QString documentOf(const QVector<FileValue> &values)
    {
        QString text = QStringLiteral("<nodes>");
        int nodeId = -1;
        for (const FileValue &entry : values) {
            if (entry.nodeId != nodeId) {
                if (nodeId >= 0)
                    text += QStringLiteral("</node>");
                text += QStringLiteral("<node nodeid=\"%1\">").arg(entry.nodeId);
                nodeId = entry.nodeId;
            }
            text += QStringLiteral("<object index=\"0x%1\" sub=\"0x%2\" value=\"%3\" />")
                        .arg(entry.index, 4, 16, QLatin1Char('0'))
                        .arg(entry.subIndex, 2, 16, QLatin1Char('0'))
                        .arg(entry.value);
        }
        if (nodeId >= 0)
            text += QStringLiteral("</node>");
        return text + QStringLiteral("</nodes>");
    }

    void import(const QString &document)
    {
        const QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("vehicle.dxxml")));
        if (!file.open(QIODevice::WriteOnly) || file.write(document.toUtf8()) < 0)
            qFatal("the file to import cannot be written");
        file.close();
        const FileDialogDriver driver(file.fileName());
        child<QPushButton>("btnImport").click();
    }

    template<typename Widget>
    Widget &child(const char *name) const
    {
        auto *widget = m_form.findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            qFatal("the window has no %s", name);
        return *widget;
    }

    OverviewForm m_form;
};
