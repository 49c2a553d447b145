// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QString>

class QIODevice;

/*! The CANopen vendor table: vendor ID (hexadecimal, with or without leading zeros); company; unused. */
class VendorTable
{
public:
    /*! Reads a table from a device that is open in text mode. */
    static VendorTable read(QIODevice &device);

    /*! Returns whether the table has no line at all, as when the resource bundle has no table. */
    bool isEmpty() const { return m_rowCount == 0; }

    /*! Returns whether the table has a company for the vendor ID. */
    bool contains(quint32 vendorId) const { return m_companies.contains(vendorId); }

    /*! Returns the company of a vendor ID, empty when the table has none. */
    QString company(quint32 vendorId) const { return m_companies.value(vendorId); }

private:
    QHash<quint32, QString> m_companies;
    int m_rowCount = 0;
};

/*! Returns the table of the resource bundle, read once per process; empty when the bundle has none. */
const VendorTable &vendorTable();
