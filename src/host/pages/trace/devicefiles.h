// SPDX-License-Identifier: MIT
#pragma once

#include <trace/decoding/tracedevices.h>

#include <QObject>
#include <QString>

#include <functional>

class QWidget;

/*! Asks for files that tell what the devices of a trace are, and reads them: snapshots, exchange files, EDS and DCF. */
class DeviceFiles : public QObject
{
    Q_OBJECT

public:
    /*! \a parent is whose dialogs they are. */
    explicit DeviceFiles(QWidget *parent);

    /*! Asks which file; the dialog begins in \a folder. */
    void choose(const QString &folder);
    /*! Reads it in the background. \a nodeId: of a data sheet that does not tell it; 0: asks for it. */
    void open(const QString &fileName, quint8 nodeId = 0);

signals:
    /*! What a file tells, and a sentence for people. */
    void read(const TraceDevices &devices, const QString &sentence);
    /*! It cannot be read, a sentence. */
    void failed(const QString &sentence);

private:
    struct Result
    {
        TraceDevices devices;
        bool needsNode = false; // a data sheet that does not say of which it is
        QString problem;        // empty: it was read
    };

    static Result readSheet(const QString &fileName, quint8 nodeId);
    static Result readSnapshot(const QString &fileName);
    void take(const QString &fileName, const Result &result);

    QWidget *m_window;
};
