// SPDX-License-Identifier: MIT
#include "exchangeaccess.h"

#include <reader/datareader.h>

ExchangeAccess::ExchangeAccess(DataReader *reader, const std::function<void()> &showValues, QObject *parent)
    : QObject(parent)
    , m_reader(reader)
    , m_showValues(showValues)
{
    setObjectName(QStringLiteral("exchangeAccess"));
}

QString ExchangeAccess::exportText() const
{
    return m_reader.isNull() ? QString() : m_reader->exportXml();
}

bool ExchangeAccess::importText(const QString &text)
{
    if (m_reader.isNull() || m_reader->isReading())
        return false;
    m_reader->importXml(text);
    m_showValues();
    return true;
}
