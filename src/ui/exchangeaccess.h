// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

#include <functional>

class DataReader;

/*! Gives the host what the window holds as the text of an exchange file, and takes such a text, so that a host
 *  can have file dialogs, checks and a command line of its own.
 *
 *  A child of the window, found by its object name "exchangeAccess" and called by the names of its operations
 *  (QMetaObject::invokeMethod); host and plug-in share no header for it. A host that knows nothing of it uses
 *  the window's buttons.
 */
class ExchangeAccess : public QObject
{
    Q_OBJECT

public:
    /*! \a showValues shows what the reader holds; called after every text that was taken. */
    ExchangeAccess(DataReader *reader, const std::function<void()> &showValues, QObject *parent);

    /*! All values of the listed nodes. */
    Q_INVOKABLE QString exportText() const;

    /*! Replaces all values and nodes by those of \a text, as far as it can be read, and shows them. Refused
     *  while a read runs: false, and nothing has changed.
     */
    Q_INVOKABLE bool importText(const QString &text);

private:
    QPointer<DataReader> m_reader;
    std::function<void()> m_showValues;
};
