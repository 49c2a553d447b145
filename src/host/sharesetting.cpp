// SPDX-License-Identifier: MIT
#include "sharesetting.h"

#include <host/core/hostsettings.h>
#include <host/core/settingsstore.h>
#include <snapshot/busshare.h>

#include <QInputDialog>

int ShareSetting::load()
{
    bool isNumber = false;
    const int percent = SettingsStore::instance().value(HostSettings::busShare).toInt(&isNumber);
    return isNumber && percent >= leastPercent && percent <= mostPercent ? percent : BusShare::usualPercent;
}

void ShareSetting::ask(int percent, QWidget *parent, const std::function<void(int)> &chosen)
{
    auto *dialog = new QInputDialog(parent);
    dialog->setObjectName(QStringLiteral("shareDialog"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Share of the bus"));
    dialog->setLabelText(
        tr("How much of the bus a check-up may use, in percent. Less takes longer and leaves the "
           "vehicle more room for its own messages."));
    dialog->setInputMode(QInputDialog::IntInput);
    dialog->setIntRange(leastPercent, mostPercent);
    dialog->setIntStep(5);
    dialog->setIntValue(percent);
    connect(dialog, &QInputDialog::intValueSelected, parent, [chosen](int value) {
        SettingsStore::instance().setValue(HostSettings::busShare, value);
        chosen(value);
    });
    dialog->open();
}
