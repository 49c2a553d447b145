// SPDX-License-Identifier: MIT
#pragma once

#include "watchmodel.h"

#include <QWidget>

#include <functional>

class BatteryOffer;
class CopyTable;
class LiveSession;
class QAction;
class QLabel;
class QLayout;
class QMenu;
class QToolButton;

/*! The watch list with what changes it. */
class WatchView : public QWidget
{
    Q_OBJECT

public:
    /*! \a session must outlive the view. */
    explicit WatchView(LiveSession *session, QWidget *parent = nullptr);

    void setFolder(const std::function<QString()> &folder) { m_folder = folder; }

    /*! Shows the values as they are now. */
    void refresh();

    /*! Learns PDOs from an EDS or DCF; \a nodeId 0: the file tells it, else the user is asked. */
    void openSheet(const QString &fileName, quint8 nodeId = 0);
    /*! Writes all histories: time, node, object, name, value, unit. */
    void write(const QString &fileName);

signals:
    /*! What came of something, and what did not go well with it. */
    void told(const QString &sentence, const QStringList &problems);
    void failed(const QString &sentence);

protected:
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void build();
    QLayout *buildButtons();
    void buildMenu();
    QAction *makeAction(const char *name);
    void add();
    void remove();
    void move(int by);
    void chooseSheet();
    void chooseBattery();
    QString nameOf(quint8 nodeId) const;
    void save();
    void showState();
    void retranslate();
    int chosenRow() const;

    LiveSession *m_session;
    WatchModel m_model;
    CopyTable *m_table;
    QLabel *m_empty;
    BatteryOffer *m_offer;
    QToolButton *m_add;
    QToolButton *m_learn;
    QToolButton *m_ask;
    QToolButton *m_more;
    QMenu *m_menu;
    QAction *m_remove;
    QAction *m_up;
    QAction *m_down;
    QAction *m_sheet;
    QAction *m_scan;
    QAction *m_battery;
    QAction *m_save;
    std::function<QString()> m_folder;
};
