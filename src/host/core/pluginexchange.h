// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

/*! The values of a plug-in's window as the text of an exchange file, by the optional object "exchangeAccess"
 *  of that window (docs/host-interface.md).
 */
class PluginExchange
{
public:
    /*! Looks into \a page, the plug-in's window; null when no plug-in is shown. */
    explicit PluginExchange(const QObject *page = nullptr);

    /*! Whether the plug-in gives and takes values so. */
    bool isAvailable() const { return !m_access.isNull(); }

    /*! All values; empty when there is no access. */
    QString text() const;

    /*! Lets the plug-in show the values of \a text. False when it does not, because a read runs or there is no
     *  access; what was shown stays then.
     */
    bool show(const QString &text) const;

private:
    QPointer<QObject> m_access;
};
