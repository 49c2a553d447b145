// SPDX-License-Identifier: MIT
#include "notesdialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int usualNotesWidth = 66; // letters
constexpr int noteLines = 4;
constexpr int longestLine = 500; // characters

QLineEdit *makeLine(const char *name, const QString &text, QWidget *parent)
{
    auto *line = new QLineEdit(text, parent);
    line->setObjectName(QLatin1String(name));
    line->setMaxLength(longestLine);
    return line;
}

} // namespace

NotesDialog::NotesDialog(const SnapshotNotes &notes, QWidget *parent)
    : ReadableDialog(usualNotesWidth, parent)
    , m_vehicle(makeLine("noteVehicle", notes.vehicle, this))
    , m_customer(makeLine("noteCustomer", notes.customer, this))
    , m_technician(makeLine("noteTechnician", notes.technician, this))
    , m_odometer(makeLine("noteOdometer", notes.odometer, this))
    , m_note(new QPlainTextEdit(notes.note, this))
{
    setObjectName(QStringLiteral("notesDialog"));
    setWindowTitle(tr("About this visit"));
    m_note->setObjectName(QStringLiteral("noteText"));
    m_note->setTabChangesFocus(true);
    m_note->setFixedHeight(fontMetrics().lineSpacing() * noteLines + 12);
    auto *form = new QFormLayout;
    form->addRow(tr("&Vehicle:"), m_vehicle);
    form->addRow(tr("&Customer:"), m_customer);
    form->addRow(tr("&Technician:"), m_technician);
    form->addRow(tr("&Odometer:"), m_odometer);
    form->addRow(tr("&Note:"), m_note);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);
}

SnapshotNotes NotesDialog::notes() const
{
    return {m_vehicle->text(), m_customer->text(), m_technician->text(), m_odometer->text(),
            m_note->toPlainText()};
}
