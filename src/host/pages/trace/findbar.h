// SPDX-License-Identifier: MIT
#pragma once

#include "tracesearch.h"

#include <QTimer>
#include <QWidget>

class QLabel;
class QLineEdit;
class QToolButton;
class TraceModel;

/*! Looks for words in the lines that are shown, forward and backward, in slices of some ms. */
class FindBar : public QWidget
{
    Q_OBJECT

public:
    /*! \a model must outlive it. */
    explicit FindBar(TraceModel *model, QWidget *parent = nullptr);

    /*! The row from which the next search goes. */
    void setRow(int row) { m_row = row; }

public slots:
    void takeFocus();
    void findNext();
    void findPrevious();

signals:
    void found(int row);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QToolButton *makeButton(const char *name, void (FindBar::*pressed)());
    void find(TraceSearch::Direction direction);
    void look();
    void tell();
    void retranslate();

    TraceModel *m_model;
    QLineEdit *m_text;
    QToolButton *m_previous;
    QToolButton *m_next;
    QLabel *m_result;
    TraceSearch m_search;
    QTimer m_timer;
    int m_row = -1;
};
