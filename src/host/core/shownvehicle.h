// SPDX-License-Identifier: MIT
#pragma once

#include <QDateTime>
#include <QObject>
#include <QSet>
#include <QString>
#include <QVariant>

class NodeStore;

/*! Which vehicle's values a plug-in shows, from where and of when, and whether they are kept in a file.
 *
 *  Plug-ins say nothing of it; the host sees values pass, and opens and saves files. Its owner reports what
 *  happens.
 */
class ShownVehicle : public QObject
{
    Q_OBJECT

public:
    enum class Source { None, Bus, File };
    Q_ENUM(Source)

    /*! What is to be said of the values beside their origin. */
    struct Note
    {
        enum class Kind {
            None, //!< nothing: they are of now and complete
            Information,
            Warning
        };
        Kind kind = Kind::None;
        QString sentence; //!< empty for None
    };

    using QObject::QObject;

    Source source() const { return m_source; }
    bool hasValues() const { return m_values > 0; }
    /*! Whether values that were read are in no file. */
    bool isUnsaved() const { return m_source == Source::Bus && hasValues() && !m_isSaved; }
    /*! Of the values shown; empty when they are in no file. */
    QString fileName() const { return m_fileName; }
    /*! The nodes that values were read of. */
    QSet<quint8> nodes() const { return m_nodes; }

    /*! For the title of a window; empty while nothing is shown. */
    QString title() const;

    /*! A file name without folder for these values: vehicle and date. */
    QString suggestedFileName() const;

    Note note() const;

public slots:
    /*! A read begins and clears what was shown. */
    void beginRead();
    void handleValue(quint8 nodeId, quint16 index, quint8 subIndex, const QVariant &value);
    /*! A read ended at \a time, early or not. \a failed: how many values may be there and could not be read. */
    void endRead(bool isComplete, const QDateTime &time, int failed = 0);
    /*! The values of \a store, from a file; \a date is that of its export, invalid when unknown. */
    void showFile(const QString &fileName, const NodeStore &store, const QDateTime &date);
    void noteSaved(const QString &fileName);

    /*! The bus is connected now, or not. Values that were read before are old from then on. */
    void setConnected(bool isConnected);
    /*! The nodes read that are not heard any more. */
    void setSilentNodes(const QSet<quint8> &nodes);

signals:
    void changed();

private:
    QString vehicleName() const;
    QString busTitle() const;
    Note busNote() const;

    Source m_source = Source::None;
    int m_values = 0;
    QSet<quint8> m_nodes;
    QSet<quint8> m_silentNodes;
    quint32 m_serialNumber = 0; // of node 1; 0: unknown
    QString m_fileName;
    QDateTime m_time; // of the end of the read, or of the export
    bool m_isSaved = false;
    bool m_isReading = false;
    bool m_isComplete = false;
    int m_failed = 0;
    bool m_isConnected = false;
    bool m_wasInterrupted = false; // the bus was away since the read
};
