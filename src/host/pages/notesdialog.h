// SPDX-License-Identifier: MIT
#pragma once

#include <snapshot/snapshot.h>

#include <QDialog>

class QLineEdit;
class QPlainTextEdit;

/*! Asks for what people write beside a visit. */
class NotesDialog : public QDialog
{
    Q_OBJECT

public:
    explicit NotesDialog(const SnapshotNotes &notes, QWidget *parent = nullptr);

    SnapshotNotes notes() const;

private:
    QLineEdit *m_vehicle;
    QLineEdit *m_customer;
    QLineEdit *m_technician;
    QLineEdit *m_odometer;
    QPlainTextEdit *m_note;
};
