// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/*! A Qt plug-in that was made for something else. */
class ForeignPlugin : public QObject
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.example.Something/1.0")
};
