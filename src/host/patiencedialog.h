// SPDX-License-Identifier: MIT
#pragma once

#include <bus/patiencesettings.h>

#include <QDialog>

class QLabel;
class QPushButton;
class QSpinBox;
class QTableWidget;

/*! Where the user chooses how long to wait for answers, in general and for single nodes. */
class PatienceDialog : public QDialog
{
    Q_OBJECT

public:
    explicit PatienceDialog(const PatienceSettings &settings, QWidget *parent = nullptr);

    /*! What is chosen. Of two rows with the same node the lower one counts. */
    PatienceSettings settings() const;

protected:
    void changeEvent(QEvent *event) override;

private:
    void build();
    void retranslate();
    void fitTable();
    void addRow(int nodeId, const PatienceSettings::Patience &patience);
    void addNextNode();
    void removeRow();
    void showDefaults();
    QSpinBox *rowBox(int row, int column) const;

    QLabel *m_explanation;
    QLabel *m_timeoutLabel;
    QLabel *m_repeatsLabel;
    QLabel *m_nodesLabel;
    QSpinBox *m_timeout;
    QSpinBox *m_repeats;
    QTableWidget *m_nodes;
    QPushButton *m_add;
    QPushButton *m_remove;
    QPushButton *m_defaults;
};
