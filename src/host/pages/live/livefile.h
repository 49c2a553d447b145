// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

class QFileDialog;
class QWidget;

/*! Files that the page "Live" writes. */
class LiveFile
{
    Q_DECLARE_TR_FUNCTIONS(LiveFile)

public:
    /*! A dialog that asks for a name in \a folder; deletes itself. Name filters are still to be set. */
    static QFileDialog *saveDialog(QWidget *parent, const char *name, const QString &title,
                                   const QString &folder);

    /*! Writes all of it or nothing; false with a sentence in \a problem. */
    static bool write(const QString &fileName, const QByteArray &content, QString *problem);
};
