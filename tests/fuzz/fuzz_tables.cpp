// SPDX-License-Identifier: MIT
// The object description table and the vendor table.
#include "bytereader.h"

#include <interpreter/objectdescriptions.h>
#include <interpreter/units.h>
#include <interpreter/vendortable.h>

#include <QBuffer>
#include <QVariant>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    const ObjectDescriptions objects = ObjectDescriptions::read(buffer);
    for (int index = 0x6000; index < 0x6200; ++index) {
        const ObjectDescription *description = objects.find(static_cast<quint16>(index));
        if (description != nullptr)
            formatWithUnit(description->unit, QVariant(-1));
    }
    buffer.seek(0);
    const VendorTable vendors = VendorTable::read(buffer);
    require(vendors.contains(0x42) || vendors.company(0x42).isEmpty());
    return 0;
}
