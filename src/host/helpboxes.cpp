// SPDX-License-Identifier: MIT
#include "helpboxes.h"

#include <QApplication>
#include <QIcon>
#include <QMessageBox>

namespace {

constexpr int iconSize = 64;

struct HelpBoxesTr
{
    Q_DECLARE_TR_FUNCTIONS(HelpBoxes)
};

QMessageBox *makeBox(QWidget *parent, const QString &name, const QString &title)
{
    auto *box = new QMessageBox(QMessageBox::NoIcon, title, QString(), QMessageBox::Ok, parent);
    box->setObjectName(name);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

} // namespace

void HelpBoxes::showAbout(QWidget *parent, const QStringList &plugins)
{
    QMessageBox *box = makeBox(parent, QStringLiteral("aboutBox"), HelpBoxesTr::tr("About Draxel"));
    box->setTextFormat(Qt::PlainText);
    box->setIconPixmap(QApplication::windowIcon().pixmap(iconSize));
    box->setText(HelpBoxesTr::tr("Draxel %1").arg(QCoreApplication::applicationVersion()));
    QStringList lines{
        HelpBoxesTr::tr("Looks into the CANopen bus of light electric vehicles."),
        HelpBoxesTr::tr("Licence: MIT. You may use, change and pass it on freely; it comes without "
                        "warranty."),
        HelpBoxesTr::tr("Qt version: %1").arg(QLatin1String(qVersion()))};
    if (!plugins.isEmpty())
        lines.append(HelpBoxesTr::tr("Plug-ins: %1").arg(plugins.join(QLatin1String(", "))));
    box->setInformativeText(lines.join(QLatin1String("\n\n")));
    box->open();
}

void HelpBoxes::showKeyList(QWidget *parent, const QVector<QPair<QString, QString>> &keys)
{
    QMessageBox *box = makeBox(parent, QStringLiteral("keyListBox"), HelpBoxesTr::tr("Key list"));
    box->setTextFormat(Qt::RichText);
    QString rows;
    for (const QPair<QString, QString> &key : keys) {
        rows += QStringLiteral("<tr><td><b>%1</b></td><td>&nbsp;&nbsp;&nbsp;%2</td></tr>")
                    .arg(key.first.toHtmlEscaped(), key.second.toHtmlEscaped());
    }
    box->setText(QStringLiteral("<table cellpadding=\"3\">%1</table>").arg(rows));
    box->open();
}
