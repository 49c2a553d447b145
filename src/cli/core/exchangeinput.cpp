// SPDX-License-Identifier: MIT
#include "exchangeinput.h"

#include <store/exchangefile.h>

#include <QCoreApplication>
#include <QDir>

namespace {

struct Tr
{
    Q_DECLARE_TR_FUNCTIONS(ExchangeInput)
};

} // namespace

bool loadNodeStore(const QString &fileName, NodeStore &store, QString *errorMessage)
{
    QString text;
    if (!loadExchangeFile(fileName, text, errorMessage))
        return false;
    const QString problem = exchangeProblem(text);
    if (!problem.isEmpty()) {
        *errorMessage
            = Tr::tr("The file %1 is no exchange file: %2").arg(QDir::toNativeSeparators(fileName), problem);
        return false;
    }
    importFrom(text, store);
    return true;
}
