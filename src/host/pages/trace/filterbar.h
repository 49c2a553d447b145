// SPDX-License-Identifier: MIT
#pragma once

#include "filterinput.h"

#include <host/pages/breakingrow.h>

class KindMenu;
class QCheckBox;
class QLineEdit;
class QToolButton;

/*! The fields by which lines of a trace are filtered. */
class FilterBar : public BreakingRow
{
    Q_OBJECT

public:
    explicit FilterBar(QWidget *parent = nullptr);

    const TraceFilter &filter() const { return m_filter; }
    /*! What is wrong with a field, a sentence; empty when nothing is. The filter is then as it was before. */
    QString problem() const;
    void clear();

signals:
    void filterChanged();
    /*! Another problem, or none any more. */
    void problemChanged();

protected:
    void changeEvent(QEvent *event) override;

private:
    QLineEdit *makeField(const char *name, int characters);
    FilterInput input() const;
    void read();
    void retranslate();

    QLineEdit *m_nodes;
    KindMenu *m_kinds;
    QLineEdit *m_objects;
    QLineEdit *m_text;
    QCheckBox *m_wrong;
    QToolButton *m_clear;
    TraceFilter m_filter;
    bool m_isClearing = false; // all fields at once
};
