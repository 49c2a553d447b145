// SPDX-License-Identifier: MIT
#pragma once

#include "readabledialog.h"

#include <snapshot/snapshot.h>

class QLineEdit;
class QPlainTextEdit;

/*! Asks for what people write beside a visit. */
class NotesDialog : public ReadableDialog
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
