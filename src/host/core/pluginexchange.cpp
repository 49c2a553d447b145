// SPDX-License-Identifier: MIT
#include "pluginexchange.h"

#include <QMetaObject>

namespace {

/*! The access object with both its operations, or null. */
QObject *findAccess(const QObject *page)
{
    auto *access = page != nullptr ? page->findChild<QObject *>(QStringLiteral("exchangeAccess")) : nullptr;
    const bool isComplete = access != nullptr && access->metaObject()->indexOfMethod("exportText()") >= 0
                            && access->metaObject()->indexOfMethod("importText(QString)") >= 0;
    return isComplete ? access : nullptr;
}

} // namespace

PluginExchange::PluginExchange(const QObject *page)
    : m_access(findAccess(page))
{
}

QString PluginExchange::text() const
{
    QString text;
    if (isAvailable())
        QMetaObject::invokeMethod(m_access, "exportText", Qt::DirectConnection, Q_RETURN_ARG(QString, text));
    return text;
}

bool PluginExchange::show(const QString &text) const
{
    bool isTaken = false;
    if (isAvailable()) {
        QMetaObject::invokeMethod(m_access, "importText", Qt::DirectConnection, Q_RETURN_ARG(bool, isTaken),
                                  Q_ARG(QString, text));
    }
    return isTaken;
}
