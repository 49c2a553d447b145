// SPDX-License-Identifier: MIT
#pragma once

#include <QFileDialog>
#include <QObject>
#include <QVector>

/*! What one file dialog offered. */
struct FileDialogRecord
{
    QString caption;
    QString suggestedFile; // without its folder
    QStringList filters;
    QFileDialog::AcceptMode acceptMode = QFileDialog::AcceptOpen;
    QWidget *parent = nullptr;
};

/*! Answers every file dialog that opens while it lives: with a file, or with Cancel. */
class FileDialogDriver : public QObject
{
    Q_OBJECT

public:
    /*! \a fileName is the answer; empty for Cancel. */
    explicit FileDialogDriver(const QString &fileName);

    const QVector<FileDialogRecord> &dialogs() const { return m_dialogs; }

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void answerDialog(QFileDialog &dialog);

    QString m_fileName;
    QVector<FileDialogRecord> m_dialogs;
};
