// SPDX-License-Identifier: MIT
#include "pl_overview.h"

#include <ui/overviewform.h>

#include <QCoreApplication>
#include <QDebug>
#include <QLocale>

Pl_Overview::Pl_Overview()
    : QObject(nullptr)
    , m_form(new OverviewForm(nullptr)) // owned by the host once it has asked for it
{
}

Pl_Overview::~Pl_Overview() = default;

bool Pl_Overview::activate()
{
    qDebug("activate overview");
    return true;
}

void Pl_Overview::setHostInterface(HostInterface *host)
{
    if (!m_form.isNull())
        m_form->setHostInterface(host);
}

QWidget *Pl_Overview::getWidget()
{
    return m_form;
}

bool Pl_Overview::deactivate()
{
    qDebug("deactivate overview");
    return true;
}

bool Pl_Overview::setConnected(bool connected)
{
    return !m_form.isNull() && m_form->setConnected(connected);
}

bool Pl_Overview::hostHook1(quint32 value)
{
    Q_UNUSED(value)
    return true;
}

bool Pl_Overview::hostHook2(quint32 value)
{
    Q_UNUSED(value)
    return true;
}

void Pl_Overview::setLanguage(const QString &language)
{
    QLocale::setDefault(QLocale(language));
    QCoreApplication::removeTranslator(&m_translator);
    const QString fileName = QCoreApplication::applicationDirPath() + QLatin1String("/languages")
                             + QStringLiteral("/pl_overview_%1.qm").arg(language);
    if (m_translator.load(fileName))
        QCoreApplication::installTranslator(&m_translator);
}
