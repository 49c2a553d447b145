// SPDX-License-Identifier: MIT
#pragma once

#include "eventmodel.h"

#include <QWidget>

#include <functional>

class CopyTable;
class QAction;
class QComboBox;
class QLineEdit;
class QToolButton;

/*! The events of a bus with what filters, copies and saves them. The newest are followed unless the user has scrolled up.
 */
class EventView : public QWidget
{
    Q_OBJECT

public:
    explicit EventView(QWidget *parent = nullptr);

    EventModel &model() { return m_model; }

    /*! The folder in which the dialog begins. */
    void setFolder(const std::function<QString()> &folder) { m_folder = folder; }

    /*! Chooses the event that is nearest to a time (us). False without any. */
    bool chooseNearest(qint64 time);

    /*! Writes what goes through the filter: JSON when its name says so, else CSV. */
    void write(const QString &fileName);

signals:
    /*! The user has chosen an event. */
    void eventChosen(const LiveEvent &event);
    /*! The user wants to see what was on the bus at an event. */
    void traceRequested(const LiveEvent &event);
    /*! A file was saved, or could not be; a sentence. */
    void succeeded(const QString &sentence);
    void failed(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;

private:
    void build();
    void follow();
    void filter();
    void save();
    void retranslate();

    EventModel m_model;
    CopyTable *m_table;
    QComboBox *m_least;
    QLineEdit *m_text;
    QToolButton *m_copy;
    QToolButton *m_save;
    QAction *m_trace;
    std::function<QString()> m_folder;
    bool m_isAtEnd = true;
};
