// SPDX-License-Identifier: MIT
#pragma once

#include "pluginactions.h"

#include <bus/busconnection.h>

#include <QKeySequence>
#include <QObject>
#include <QPair>
#include <QStringList>
#include <QVector>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;

/*! The menus of the window with their shortcuts. Knows only actions; what they do is connected outside. */
class HostMenus : public QObject
{
    Q_OBJECT

public:
    /*! Adds the menus to \a window and belongs to it. \a plugin gives the actions of the plug-in. */
    HostMenus(QMainWindow *window, PluginActions *plugin);

    /*! The languages that can be chosen, and the one that is; empty: that of the system. */
    void setLanguages(const QStringList &languages, const QString &chosen);

    /*! What the menu calls \a language: by its own name, or in English letters that its font is missing. */
    static QString languageLabel(const QString &language, bool hasFont);

    /*! The files that can be opened again, the newest first. */
    void setRecentFiles(const QStringList &files);

    /*! An action that shows and hides the messages, as its dock gives it. */
    void setMessagesAction(QAction *action);

    /*! What the page of the check-up offers. */
    void addCheckup(QAction *checkup, QAction *save, QAction *report);

    /*! \a isReading: a plug-in; \a isCheckingUp: the host itself. */
    void showState(BusConnection::State state, bool isReading, bool isCheckingUp);
    void retranslate();

    /*! What can be pressed, as "Ctrl+K" and what it does. */
    QVector<QPair<QString, QString>> shortcuts() const;

    QAction *saveBundle;
    QAction *quit;
    QAction *connectBus;
    QAction *disconnectBus;
    QAction *cancelRead;
    QAction *refreshInterfaces;
    QAction *patience;
    QAction *resetLayout;
    QAction *keyList;
    QAction *about;
    QAction *aboutQt;

signals:
    /*! Empty: that of the system. */
    void languageChosen(const QString &language);
    void recentFileChosen(const QString &fileName);
    /*! 0: that of the plug-ins, 1: check-up, 2: live, 3: trace, 4: archive. */
    void pageChosen(int number);

private:
    QAction *makeAction(const char *name, const QKeySequence &shortcut = QKeySequence());
    void fillMenus();
    void nameMenus();

    QMainWindow *m_window;
    PluginActions *m_plugin;
    QMenu *m_file;
    QMenu *m_recent;
    QMenu *m_bus;
    QMenu *m_view;
    QMenu *m_language;
    QMenu *m_help;
    QActionGroup *m_languages;
    QVector<QAction *> m_pages;
    QAction *m_systemLanguage = nullptr;
    QAction *m_messages = nullptr;
};
