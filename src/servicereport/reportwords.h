// SPDX-License-Identifier: MIT
#pragma once

#include <canopen/objectkey.h>
#include <checkup/findings.h>

#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QVariant>

struct SnapshotNode;

/*! Numbers, dates and names as the language of a report writes them. */
class ReportWords
{
public:
    explicit ReportWords(const QLocale &locale)
        : m_locale(locale)
    {
    }

    const QLocale &locale() const { return m_locale; }

    /*! "3 September 2026" */
    QString date(const QDateTime &time) const;
    /*! "3 September 2026, 10:12 (UTC+02:00)" */
    QString dateAndTime(const QDateTime &time) const;

    /*! A number with that many digits behind the point. */
    QString number(double value, int decimals) const;

    /*! A number in a unit of the object table ("mV"): 36500 is "36.50 V". \a decimals of the number that is shown. */
    QString inUnit(double value, const QString &unit, int decimals = 2) const;

    /*! Minutes as they are read: "45 min", from an hour on "5.5 h", from ten on whole hours. */
    QString minutes(double value) const;

    /*! The value of an object with its unit, words and states as the overview shows them, and minutes as minutes(). */
    QString value(CanOpen::ObjectKey key, const QVariant &value) const;

    /*! Name and number in the object table: "Battery pack SOH (6176h.1)"; the number alone when it has no name. */
    static QString objectName(CanOpen::ObjectKey key);

    /*! At most \a longest characters of a text from a device or file, with "..." when there were more. */
    static QString shortened(const QString &text, int longest = 200);

    /*! What the check-up calls a device; what it calls itself when the check-up does not know it. */
    static QString name(const CheckupResult &checkup, const SnapshotNode &node);

    /*! "Battery Pack (node 2)", and the vehicle for node 0. */
    static QString place(const QString &name, quint8 nodeId);

private:
    QLocale m_locale;
};
