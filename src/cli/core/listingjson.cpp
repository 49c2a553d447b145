// SPDX-License-Identifier: MIT
#include "nodelisting.h"

#include "jsonornull.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

struct ColorName
{
    Qt::GlobalColor color;
    const char *name;
};

// All that the tables use.
constexpr ColorName colorNames[] = {
    {Qt::black, "black"}, {Qt::white, "white"},   {Qt::red, "red"},
    {Qt::green, "green"}, {Qt::blue, "blue"},     {Qt::darkGreen, "darkGreen"},
    {Qt::cyan, "cyan"},   {Qt::yellow, "yellow"}, {Qt::darkYellow, "darkYellow"},
};

QJsonValue colorName(const std::optional<Qt::GlobalColor> &color)
{
    for (const ColorName &row : colorNames) {
        if (color == row.color)
            return QLatin1String(row.name);
    }
    return QJsonValue::Null;
}

QJsonArray componentArray(const QVector<Component> &components)
{
    QJsonArray array;
    for (const Component &component : components) {
        array.append(QJsonObject{{QStringLiteral("name"), component.name},
                                 {QStringLiteral("state"), textOrNull(component.deviceState)},
                                 {QStringLiteral("tooltip"), textOrNull(component.toolTip)}});
    }
    return array;
}

QJsonArray rowArray(const QVector<TextRows::Row> &rows)
{
    QJsonArray array;
    for (const TextRows::Row &row : rows) {
        if (row.kind == TextRows::Kind::Separator)
            continue;
        QJsonObject object{{QStringLiteral("name"), row.detail.name},
                           {QStringLiteral("text"), row.detail.text},
                           {QStringLiteral("tooltip"), textOrNull(row.detail.toolTip)},
                           {QStringLiteral("colour"), colorName(row.detail.color)}};
        if (row.kind == TextRows::Kind::List) {
            object.insert(QStringLiteral("text"), row.entries.join(QLatin1Char('\n')));
            object.insert(QStringLiteral("entries"), QJsonArray::fromStringList(row.entries));
        }
        array.append(object);
    }
    return array;
}

} // namespace

QByteArray listingJson(const QVector<ListedNode> &nodes)
{
    QJsonArray array;
    for (const ListedNode &node : nodes) {
        array.append(QJsonObject{{QStringLiteral("id"), node.id},
                                 {QStringLiteral("nmtState"), textOrNull(node.nmtState)},
                                 {QStringLiteral("components"), componentArray(node.components)},
                                 {QStringLiteral("parameters"), rowArray(node.parameters)},
                                 {QStringLiteral("values"), rowArray(node.values)}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("nodes"), array}}).toJson();
}
