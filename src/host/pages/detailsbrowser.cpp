// SPDX-License-Identifier: MIT
#include "detailsbrowser.h"

#include <QMimeData>
#include <QRegularExpression>

#include <memory>

namespace {

constexpr ushort wordJoiner = 0x2060; // no break here, and nothing to be seen

} // namespace

QString DetailsBrowser::unbroken(const QString &line)
{
    static const QRegularExpression dot(QStringLiteral("(?<=\\b[0-9A-F]{4}h\\.)(?=[0-9])"));
    return QString(line).replace(dot, QChar(wordJoiner));
}

QMimeData *DetailsBrowser::createMimeDataFromSelection() const
{
    const std::unique_ptr<QMimeData> all(QTextBrowser::createMimeDataFromSelection());
    auto *copied = new QMimeData;
    copied->setText(all->text().remove(QChar(wordJoiner)));
    copied->setHtml(all->html().remove(QChar(wordJoiner)));
    return copied;
}
