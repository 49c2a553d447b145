// SPDX-License-Identifier: MIT
#pragma once

#include <host/core/pluginexchange.h>

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class NodeStore;
class QWidget;
class ShownVehicle;
struct Snapshot;

/*! Opens and saves the values of a plug-in as exchange files, and asks before values that are in no file get
 *  lost. A file is looked at before it replaces what is shown. Snapshots are opened too: the plug-in shows what of them an
 *  exchange file can hold.
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

    /*! Lets the user choose a file, see chosen(). */
    void open(const QStringList &nameFilters);

    /*! Shows a file, in a later turn of the event loop; says why when it cannot be shown, and what was shown stays
     *  then.
     */
    void openFile(const QString &fileName);

    /*! Shows a snapshot that came from elsewhere; \a name is what it is called in its place in the title. */
    void showSnapshot(const Snapshot &snapshot, const QString &name);

    /*! The same as openFile() with what was read out of a file already, \a then follows when it is shown. */
    void openSnapshot(const Snapshot &snapshot, const QString &fileName, const Action &then);

    /*! Something else is shown from now on: files that are still being opened are not shown any more. */
    void dropOpening() { ++m_opening; }

    /*! Whether what it was made for is still what was asked for last. */
    using StillWanted = std::function<bool()>;
    /*! For whoever opens a file by himself: the same as dropOpening(), and it is one of those files. */
    StillWanted startOpening();

    /*! A file was opened by somebody else. */
    void noteOpened(const QString &fileName);

    /*! Whether the name is that of a file that can be opened: .dxsnap, .dxxml */
    static bool isVehicleFile(const QString &fileName);
    /*! What the names of such files end with. */
    static QStringList endings();
    /*! The kinds of files for a file dialog. */
    static QString fileFilter();

    /*! Lets the user choose a name and saves the values; \a then follows when they are saved. */
    void save(const Action &then = Action());

    /*! Does \a proceed at once, or after the user was asked when it would lose values that are in no file. */
    void whenKept(const Action &proceed);

signals:
    /*! The user has chosen a file that is to be opened. */
    void chosen(const QString &fileName);
    /*! A file was opened, with what it holds. */
    void opened(const Snapshot &snapshot, const QString &fileName);
    /*! What has been done, a sentence. */
    void succeeded(const QString &sentence);
    /*! What could not be done and why, for a box. */
    void failed(const QString &sentence);
    /*! RecentFiles has changed. */
    void recentChanged();

private:
    void show(const QString &fileName);
    void openSnapshot(const QString &fileName);
    void tellOpened(const Snapshot &snapshot, const QString &fileName);
    bool showInPlugin(const QString &fileName, const QString &text, const NodeStore &store,
                      const QDateTime &time);
    void showText(const QString &fileName, const QString &text, const NodeStore &store);
    bool write(const QString &fileName);
    void refuse(const QString &fileName, const QString &reason);

    ShownVehicle *m_vehicle;
    QWidget *m_window;
    PluginExchange m_exchange;
    quint64 m_opening = 0; // another one for each file; what was asked for before is not shown any more
};
