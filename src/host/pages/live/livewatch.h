// SPDX-License-Identifier: MIT
#pragma once

#include "watchlist.h"

#include <host/core/valueasking.h>
#include <live/values/livevalues.h>

#include <QObject>
#include <QStringList>

class LiveBus;
class LiveQuestions;

/*! The watch list on a bus: has what is to be asked for asked, and keeps the histories of what is heard. */
class LiveWatch : public QObject
{
    Q_OBJECT

public:
    /*! Both must outlive it. Begins with the list that is in the settings. */
    LiveWatch(LiveBus *live, LiveQuestions *questions, QObject *parent = nullptr);

    const QVector<WatchedItem> &items() const { return m_list.items(); }
    int find(quint8 nodeId, CanOpen::ObjectKey object) const { return m_list.find(nodeId, object); }

    /*! The same as of WatchList; remembered in the settings at once. */
    bool add(const WatchedItem &item);
    void remove(int row);
    void move(int row, int place);
    void setPlotted(int row, bool isPlotted);

    /*! The value of an item; null while it was never heard. */
    const LiveValue *value(int row) const;
    /*! Its name, heard or not; with node and object when others have the same. */
    QString name(int row) const { return m_names.value(row); }
    /*! Why there is none, or none that is new, a sentence; empty when nothing speaks against it. */
    QString silence(int row) const;

    /*! Keeps the histories of values that were heard for the first time; called ten times a second. */
    void bind();

signals:
    /*! The items, or their order. */
    void changed();

private:
    void handleChange();
    void ask();
    void findNames();
    QVector<AskedObject> asked() const;

    LiveBus *m_live;
    LiveQuestions *m_questions;
    WatchList m_list;
    QStringList m_names;
    QVector<AskedObject> m_asked;
};
