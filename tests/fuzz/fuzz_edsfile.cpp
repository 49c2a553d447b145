// SPDX-License-Identifier: MIT
// Electronic data sheets and device configuration files.
#include "bytereader.h"

#include <canopen/edsfile.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    using namespace CanOpen;

    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    QString problem;
    const std::optional<EdsFile> file = parseEds(text, 5, &problem);
    require(file.has_value() == problem.isEmpty());
    require(problem.size() < 2000);
    for (const QChar character : qAsConst(problem))
        require(character.category() != QChar::Other_Control);
    if (!file)
        return 0;
    const QVector<ObjectKey> keys = file->dictionary.keys();
    require(!keys.isEmpty());
    for (const ObjectKey key : keys) {
        const ObjectEntry &entry = *file->dictionary.find(key);
        require(byteSize(entry.type) == 0 || entry.data.size() == byteSize(entry.type));
        file->dictionary.value(key);
    }
    return 0;
}
