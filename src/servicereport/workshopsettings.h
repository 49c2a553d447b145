// SPDX-License-Identifier: MIT
#pragma once

#include "servicereportdata.h"

#include <QCoreApplication>
#include <QVariantMap>

/*! The workshop as the user has entered it once, for all reports. */
class WorkshopSettings
{
    Q_DECLARE_TR_FUNCTIONS(WorkshopSettings)

public:
    static constexpr int largestLogo = 8 * 1024 * 1024; // bytes of the file

    QString name;
    QStringList lines; //!< address, telephone
    QString logoFile;  //!< may be empty

    static WorkshopSettings load(const QVariantMap &settings);
    void save(QVariantMap *settings) const;

    /*! With the logo. When that cannot be used, it is left out, with a sentence in \a errorMessage. */
    Workshop toWorkshop(QString *errorMessage) const;

private:
    static QImage loadLogo(const QString &fileName, QString *errorMessage);
};
