// SPDX-License-Identifier: MIT
#pragma once

#include "readabledialog.h"

class QLabel;
class QLineEdit;
class QRadioButton;

/*! Asks where the archive is, and saves it in the settings: on this computer, or where several share one. */
class ArchiveAddressDialog : public ReadableDialog
{
    Q_OBJECT

public:
    explicit ArchiveAddressDialog(QWidget *parent = nullptr);

    void accept() override;

private:
    void arrange(QWidget *buttons);
    void showChoice();

    QRadioButton *m_own;
    QRadioButton *m_other;
    QLineEdit *m_address;
    QLabel *m_problem;
};
