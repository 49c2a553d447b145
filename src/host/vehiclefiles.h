// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/pluginexchange.h>

#include <QObject>
#include <QString>

#include <functional>

class NodeStore;
class QWidget;
class ShownVehicle;

/*! Opens and saves the values of a plug-in as exchange files, and asks before values that are in no file get
 *  lost. A file is looked at before it replaces what is shown.
 *
 *  Dialogs are shown, not run: everything returns at once.
 */
class VehicleFiles : public QObject
{
    Q_OBJECT

public:
    using Action = std::function<void()>;

    /*! \a window is the parent of dialogs; \a vehicle must outlive this. */
    VehicleFiles(ShownVehicle *vehicle, QWidget *window);

    /*! Turns to the plug-in whose window is \a page; null for none. */
    void setPage(const QWidget *page);

    /*! Whether the plug-in takes part; else there are only its own buttons. */
    bool isAvailable() const { return m_exchange.isAvailable(); }

    /*! Lets the user choose a file and shows it. */
    void open();

    /*! Shows a file, in a later turn of the event loop; says why when it cannot be shown, and what was shown stays
     *  then.
     */
    void openFile(const QString &fileName);

    /*! Lets the user choose a name and saves the values; \a then follows when they are saved. */
    void save(const Action &then = Action());

    /*! Does \a proceed at once, or after the user was asked when it would lose values that are in no file. */
    void whenKept(const Action &proceed);

signals:
    /*! What has been done, a sentence. */
    void succeeded(const QString &sentence);
    /*! What could not be done and why, for a box. */
    void failed(const QString &sentence);
    /*! RecentFiles has changed. */
    void recentChanged();

private:
    void show(const QString &fileName);
    void showText(const QString &fileName, const QString &text, const NodeStore &store);
    bool write(const QString &fileName);
    void refuse(const QString &fileName, const QString &reason);
    QString startFolder() const;

    ShownVehicle *m_vehicle;
    QWidget *m_window;
    PluginExchange m_exchange;
};
