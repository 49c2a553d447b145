// SPDX-License-Identifier: MIT
#include "vendortable.h"

#include "tablerow.h"

#include <QFile>

namespace {

constexpr int companyField = 1;

}

VendorTable VendorTable::read(QIODevice &device)
{
    VendorTable table;
    forEachTableRow(device, [&table](const QStringList &fields) {
        ++table.m_rowCount;

        // Deliberate: an ID is a signed number, so vendors from 80000000h on are never found and show their
        // number
        bool isNumber = false;
        const auto vendorId = static_cast<quint32>(tableKey(fields, &isNumber));
        if (isNumber && !table.m_companies.contains(vendorId))
            table.m_companies.insert(vendorId, tableField(fields, companyField));
    });
    return table;
}

const VendorTable &vendorTable()
{
    static const VendorTable table = [] {
        QFile file(QStringLiteral(":/files/vendor.csv"));
        return file.open(QIODevice::ReadOnly | QIODevice::Text) ? VendorTable::read(file) : VendorTable();
    }();
    return table;
}
