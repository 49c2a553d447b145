// SPDX-License-Identifier: MIT
#include "datasheets.h"

#include "commandarguments.h"
#include "console.h"
#include "objectaddress.h"

#include <algorithm>

namespace {

constexpr QLatin1String edsOption("eds");

} // namespace

void DataSheets::addOption(CommandArguments &options, const QString &description)
{
    options.addOption({edsOption, description, QStringLiteral("N:FILE")});
}

std::optional<ExitStatus> DataSheets::parse(const CommandArguments &options)
{
    const QStringList texts = options.values(edsOption);
    for (const QString &text : texts) {
        const int colon = text.indexOf(QLatin1Char(':'));
        const std::optional<quint8> nodeId = ObjectAddress::parseNodeId(text.left(std::max(colon, 0)));
        if (!nodeId)
            return options.complain(tr("--eds takes a node ID and a file, as in 2:battery.eds."));
        QString error;
        const std::optional<CanOpen::EdsFile> sheet
            = CanOpen::readEdsFile(text.mid(colon + 1), *nodeId, &error);
        if (!sheet) {
            Console::printError(error);
            return Exit::fileFailed;
        }
        m_sheets.insert(*nodeId, *sheet);
    }
    return std::nullopt;
}

const CanOpen::ObjectDictionary *DataSheets::find(quint8 nodeId) const
{
    const auto sheet = m_sheets.constFind(nodeId);
    return sheet != m_sheets.cend() ? &sheet->dictionary : nullptr;
}
